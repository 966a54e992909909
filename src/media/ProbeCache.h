#pragma once

#include "media/FFprobeOutput.h"

#include <QHash>
#include <QString>
#include <optional>

// What ffprobe answered about files, remembered between scans in one JSON file, so that a
// rescan of unchanged footage launches nothing. An answer counts only for the same file size,
// modification time and ffprobe. It is only a cache: a missing, corrupt or foreign file reads
// as empty and is replaced at the next save. One instance serves one scan on one thread.
class ProbeCache
{
public:
    struct Probe {
        FFprobeOutput::Reading reading;
        // False when ffprobe did not answer (not launched, failed, timed out).
        bool readable = false;
    };
    struct Stamp {
        qint64 size = 0;
        qint64 modified = 0; // milliseconds since the epoch
        bool operator==(const Stamp &) const = default;
    };

    // The cache file in this user's cache folder, shared by the application and the CLI.
    static QString platformLocation();

    // Reads `file` now; an empty name keeps nothing. `ffprobe` identifies the tool the answers come from; answers of another
    // are ignored.
    ProbeCache(QString file, QString ffprobe);

    // The remembered answer for `path` as it is now; a hit counts as seen.
    std::optional<Probe> recall(const QString &path, Stamp stamp);
    void remember(const QString &path, Stamp stamp, const Probe &probe);

    // Writes the answers seen by this scan of `folder` together with the answers the file holds
    // (now, whoever wrote them) for existing files outside it. Files under `folder` that this
    // scan did not see are dropped, so the cache follows the footage instead of growing.
    void save(const QString &folder) const;

private:
    struct Entry {
        Stamp stamp;
        Probe probe;
    };
    QHash<QString, Entry> read() const;

    QString m_file;
    QString m_ffprobe;
    QHash<QString, Entry> m_known;
    QHash<QString, Entry> m_seen;
    bool m_learnt = false;
};
