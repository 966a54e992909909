#include "export/EditorHandoff.h"

#include "export/PremiereScript.h"
#include "platform/AtomicFile.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace ExportFiles {

QString withExtension(const QString &path, const QString &extension)
{
    const qsizetype nameStart = path.lastIndexOf(u'/') + 1;
    const qsizetype dot = path.lastIndexOf(u'.');
    // A leading dot names a hidden file, not an extension.
    if (dot > nameStart) {
        if (QStringView(path).sliced(dot + 1) == extension)
            return path;
        return path.left(dot + 1) + extension;
    }
    return path + u'.' + extension;
}

} // namespace ExportFiles

EditorLocations EditorLocations::forThisPlatform()
{
#if defined(Q_OS_MACOS)
    return {{"/Applications/Adobe Premiere Pro 2026/Adobe Premiere Pro 2026.app"_L1,
             "/Applications/Adobe Premiere Pro 2025/Adobe Premiere Pro 2025.app"_L1,
             "/Applications/Adobe Premiere Pro CC/Adobe Premiere Pro CC.app"_L1,
             "/Applications/Adobe Premiere Pro/Adobe Premiere Pro.app"_L1},
            {"/Applications/DaVinci Resolve/DaVinci Resolve.app"_L1,
             "/Applications/DaVinci Resolve Studio/DaVinci Resolve Studio.app"_L1},
            {"/Applications/Final Cut Pro.app"_L1, "/Applications/Final Cut Pro Trial.app"_L1}};
#elif defined(Q_OS_WIN)
    return {{"C:/Program Files/Adobe/Adobe Premiere Pro 2026/Adobe Premiere Pro.exe"_L1,
             "C:/Program Files/Adobe/Adobe Premiere Pro 2025/Adobe Premiere Pro.exe"_L1,
             "C:/Program Files/Adobe/Adobe Premiere Pro CC/Adobe Premiere Pro.exe"_L1,
             "C:/Program Files/Adobe/Adobe Premiere Pro/Adobe Premiere Pro.exe"_L1},
            {"C:/Program Files/Blackmagic Design/DaVinci Resolve/Resolve.exe"_L1}};
#else
    // Premiere Pro does not exist for Linux; Resolve installs under /opt.
    return {{}, {"/opt/resolve/bin/resolve"_L1}};
#endif
}

std::optional<QString> firstExisting(const QStringList &candidates)
{
    for (const QString &candidate : candidates) {
        if (QFileInfo::exists(candidate))
            return candidate;
    }
    return std::nullopt;
}

QString resolveImportInstructions(const QString &fileName)
{
    return "In DaVinci Resolve:\n\n1. Right-click in the Media Pool\n2. Timelines > Import > AAF, EDL, XML, OTIO...\n"
           "3. Select "_L1
           + fileName
           + "\n4. UNTICK 'Automatically import source clips into media pool'\n5. Click OK\n\n"
             "Timeline with markers will appear. Import your footage separately."_L1;
}

EditorHandoff::EditorHandoff(Workspace &workspace, QString temporaryDirectory, EditorLocations locations)
    : m_workspace(workspace), m_temporaryDirectory(std::move(temporaryDirectory)), m_locations(std::move(locations))
{
}

bool EditorHandoff::hasPremiere() const
{
    return firstExisting(m_locations.premierePro).has_value();
}

bool EditorHandoff::hasResolve() const
{
    return firstExisting(m_locations.davinciResolve).has_value();
}

bool EditorHandoff::hasFinalCutPro() const
{
    return firstExisting(m_locations.finalCutPro).has_value();
}

QString EditorHandoff::temporaryFile(const QString &name) const
{
    return QDir(m_temporaryDirectory).filePath(name);
}

void EditorHandoff::openWithPremiere(const QString &file) const
{
    if (const auto premiere = firstExisting(m_locations.premierePro))
        m_workspace.openWithApplication(file, *premiere);
}

bool EditorHandoff::openInPremiere(const QString &markerXML) const
{
    const QString xmlPath = temporaryFile(ExportFiles::markersXML);
    const QString scriptPath = temporaryFile(ExportFiles::premiereScript);
    const bool xmlWritten = writeFileAtomically(xmlPath, markerXML.toUtf8());
    const bool scriptWritten = writeFileAtomically(scriptPath, premiereScript(xmlPath).toUtf8());
    openWithPremiere(scriptPath);
    return xmlWritten && scriptWritten;
}

bool EditorHandoff::openSelectsInPremiere(const QString &selectsXML) const
{
    const QString path = temporaryFile(ExportFiles::selectsXML);
    const bool written = writeFileAtomically(path, selectsXML.toUtf8());
    openWithPremiere(path);
    return written;
}

bool EditorHandoff::openInFinalCutPro(const QString &fcpxml) const
{
    const QString path = temporaryFile(ExportFiles::markersFCPXML);
    const bool written = writeFileAtomically(path, fcpxml.toUtf8());
    if (const auto finalCut = firstExisting(m_locations.finalCutPro))
        m_workspace.openWithApplication(path, *finalCut);
    return written;
}

void EditorHandoff::launchResolve() const
{
    if (const auto resolve = firstExisting(m_locations.davinciResolve))
        m_workspace.launchApplication(*resolve);
}
