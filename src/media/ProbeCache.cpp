#include "media/ProbeCache.h"

#include "platform/AtomicFile.h"
#include "time/NumberText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutex>
#include <QStandardPaths>

namespace {

const QString ffprobeKey = QStringLiteral("ffprobe");
const QString filesKey = QStringLiteral("files");
const QString pathKey = QStringLiteral("path");
const QString sizeKey = QStringLiteral("size");
const QString modifiedKey = QStringLiteral("modified");
const QString readableKey = QStringLiteral("readable");
const QString timecodeKey = QStringLiteral("timecode");
const QString durationKey = QStringLiteral("duration");
const QString widthKey = QStringLiteral("width");
const QString heightKey = QStringLiteral("height");
const QString fpsKey = QStringLiteral("fps");

// Scans of several folders save at about the same time; each save reads what the others wrote.
QMutex saving;

void putOptional(QJsonObject &object, const QString &key, const std::optional<int> &value)
{
    if (value)
        object.insert(key, *value);
}

std::optional<int> optionalInt(const QJsonObject &object, const QString &key)
{
    const QJsonValue value = object.value(key);
    return value.isDouble() ? std::optional(value.toInt()) : std::nullopt;
}

QJsonObject toJson(const QString &path, const ProbeCache::Stamp &stamp, const ProbeCache::Probe &probe)
{
    const FFprobeOutput::Reading &reading = probe.reading;
    QJsonObject object{{pathKey, path},
                       {sizeKey, double(stamp.size)},
                       {modifiedKey, double(stamp.modified)},
                       {readableKey, probe.readable},
                       // As text, with every digit a double needs: JSON has no infinity.
                       {durationKey, QString::number(reading.duration, 'g', 17)}};
    if (reading.timecode)
        object.insert(timecodeKey, *reading.timecode);
    putOptional(object, widthKey, reading.resolution.width);
    putOptional(object, heightKey, reading.resolution.height);
    putOptional(object, fpsKey, reading.fps);
    return object;
}

} // namespace

QString ProbeCache::platformLocation()
{
    // One file for the application and the command-line tool, whose own cache folders differ by
    // program name: a scan by either warms the other.
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation))
        .filePath(QStringLiteral("vorlix-sync/probe-cache.json"));
}

ProbeCache::ProbeCache(QString file, QString ffprobe)
    : m_file(std::move(file))
    , m_ffprobe(std::move(ffprobe))
    , m_known(read())
{
}

QHash<QString, ProbeCache::Entry> ProbeCache::read() const
{
    if (m_file.isEmpty())
        return {};
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    if (root.value(ffprobeKey).toString() != m_ffprobe)
        return {};
    const QJsonArray files = root.value(filesKey).toArray();
    QHash<QString, Entry> entries;
    entries.reserve(files.size());
    for (const QJsonValue &value : files) {
        const QJsonObject object = value.toObject();
        const QJsonValue path = object.value(pathKey);
        const QJsonValue size = object.value(sizeKey);
        const QJsonValue modified = object.value(modifiedKey);
        const QJsonValue readable = object.value(readableKey);
        const auto duration = parseStrictDecimal(object.value(durationKey).toString());
        if (!path.isString() || !size.isDouble() || !modified.isDouble() || !readable.isBool() || !duration)
            continue;
        const QJsonValue timecode = object.value(timecodeKey);
        const FFprobeOutput::Reading reading{timecode.isString() ? std::optional(timecode.toString()) : std::nullopt, *duration,
                                             {optionalInt(object, widthKey), optionalInt(object, heightKey)},
                                             optionalInt(object, fpsKey)};
        entries.insert(path.toString(), {{qint64(size.toDouble()), qint64(modified.toDouble())}, {reading, readable.toBool()}});
    }
    return entries;
}

std::optional<ProbeCache::Probe> ProbeCache::recall(const QString &path, Stamp stamp)
{
    const auto found = m_known.constFind(path);
    if (found == m_known.cend() || found->stamp != stamp)
        return std::nullopt;
    m_seen.insert(path, *found);
    return found->probe;
}

void ProbeCache::remember(const QString &path, Stamp stamp, const Probe &probe)
{
    m_seen.insert(path, {stamp, probe});
    m_learnt = true;
}

void ProbeCache::save(const QString &folder) const
{
    const QString inside = QDir::cleanPath(QDir(folder).absolutePath()) + u'/';
    const QMutexLocker lock(&saving);
    const QHash<QString, Entry> stored = read();
    QJsonArray files;
    qsizetype dropped = 0;
    qsizetype stillStored = 0;
    for (auto it = stored.cbegin(); it != stored.cend(); ++it) {
        if (m_seen.contains(it.key())) {
            ++stillStored;
            continue;
        }
        if (it.key().startsWith(inside) || !QFileInfo::exists(it.key()))
            ++dropped;
        else
            files.append(toJson(it.key(), it->stamp, it->probe));
    }
    // A rescan that only recalled answers leaves the file as it is.
    if (!m_learnt && dropped == 0 && stillStored == m_seen.size())
        return;
    for (auto it = m_seen.cbegin(); it != m_seen.cend(); ++it)
        files.append(toJson(it.key(), it->stamp, it->probe));
    QDir().mkpath(QFileInfo(m_file).absolutePath());
    writeFileAtomically(m_file, QJsonDocument(QJsonObject{{ffprobeKey, m_ffprobe}, {filesKey, files}}).toJson(QJsonDocument::Compact));
}
