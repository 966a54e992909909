#pragma once

#include <QString>
#include <QStringList>
#include <optional>

// Where the external tools are looked for and where their scratch files go. The probes, the
// audio track choice and the analysis take one of these at construction, so a test can point
// them at a folder without ffprobe, or at a private temporary directory.
struct ToolLocations {
    // Tried in this order with a file-exists check; the first that exists is used.
    QStringList ffprobeCandidates;
    // What the media probes launch when no candidate exists. A bare name is resolved by QProcess
    // through PATH, which is how the Linux build finds a tool installed elsewhere.
    QString ffprobeFallback;
    QStringList ffmpegCandidates;
    QString temporaryDirectory;

    // The tool paths of this platform and the per-user temporary directory.
    static ToolLocations platformDefault();

    std::optional<QString> existingFFprobe() const;
    std::optional<QString> existingFFmpeg() const;
    // `name` inside the temporary directory.
    QString temporaryFile(const QString &name) const;
};
