#include "platform/AtomicFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cerrno>
#include <cstring>

namespace {

// Unbuffered, so that a short write (a full disk, a file size limit) shows in write()'s count at
// once instead of vanishing in a flush whose failure QSaveFile::commit does not report. Qt words
// a short write as "Unknown error" while errno holds the reason, so the system's own text wins.
template<typename File, typename Finish>
bool writeWhole(File &file, const QByteArray &bytes, QString *error, Finish finish)
{
    const auto step = [](auto &&attempt) {
        errno = 0;
        return attempt();
    };
    if (step([&] { return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered); })
        && step([&] { return file.write(bytes) == bytes.size(); }) && step(finish))
        return true;
    if (error)
        *error = errno != 0 ? QString::fromLocal8Bit(std::strerror(errno)) : file.errorString();
    return false;
}

} // namespace

bool writeFileAtomically(const QString &path, const QByteArray &bytes, QString *error)
{
    const QFileInfo target(path);
    if (target.exists() && !target.isFile() && !target.isDir()) {
        QFile file(path);
        return writeWhole(file, bytes, error, [] { return true; });
    }
    QSaveFile file(path);
    if (writeWhole(file, bytes, error, [&] { return file.commit(); }))
        return true;
    file.cancelWriting();
    return false;
}
