#pragma once

#include "platform/Workspace.h"

#include <QString>
#include <QStringList>
#include <optional>

// Where the documents go and which application gets them. The documents themselves are made by
// the generators beforehand; this writes them (UTF-8, atomically) and asks the workspace to open
// them. A failed write does not stop the hand-off; it is reported to the caller.

namespace ExportFiles {
inline const QString markersEDL = QStringLiteral("vorlix-markers.edl");
inline const QString markersXML = QStringLiteral("vorlix-markers.xml");
inline const QString selectsXML = QStringLiteral("vorlix-selects.xml");
inline const QString sessionOTIO = QStringLiteral("vorlix-session.otio");
inline const QString premiereScript = QStringLiteral("vorlix-premiere.jsx");
inline const QString markersFCPXML = QStringLiteral("vorlix-markers.fcpxml");
inline const QString markersAvid = QStringLiteral("vorlix-markers-avid.txt");
inline const QString markersCSV = QStringLiteral("vorlix-markers.csv");
inline const QString transcriptSRT = QStringLiteral("vorlix-transcript.srt");
inline const QString transcriptVTT = QStringLiteral("vorlix-transcript.vtt");

// `path` with its file name's extension made exactly `extension` (case-sensitive): replaced when
// different, appended when there is none. markers.txt gives markers.edl, session.EDL session.edl.
QString withExtension(const QString &path, const QString &extension);
} // namespace ExportFiles

// Installed editing applications, most preferred first.
struct EditorLocations {
    QStringList premierePro;
    QStringList davinciResolve;
    QStringList finalCutPro{}; // only macOS has it

    static EditorLocations forThisPlatform();
};

// The first candidate that exists on disk.
std::optional<QString> firstExisting(const QStringList &candidates);

// The steps of the DaVinci Resolve import, naming the saved file.
QString resolveImportInstructions(const QString &fileName);

class EditorHandoff
{
public:
    EditorHandoff(Workspace &workspace, QString temporaryDirectory, EditorLocations locations);

    bool hasPremiere() const;
    bool hasResolve() const;
    bool hasFinalCutPro() const;
    // Where the hand-off writes the file named `name`.
    QString temporaryFile(const QString &name) const;

    // Writes the marker sequence and its import script to the temporary directory and hands the
    // script to Premiere Pro; nothing is opened without Premiere Pro (the screen saves through a
    // panel then). False when a file could not be written.
    bool openInPremiere(const QString &markerXML) const;

    // Writes the selects sequence to the temporary directory and opens it in Premiere Pro. False
    // when it could not be written.
    bool openSelectsInPremiere(const QString &selectsXML) const;

    // Writes the FCPXML document to the temporary directory and opens it in Final Cut Pro, which
    // imports it; nothing is opened without Final Cut Pro. False when it could not be written.
    bool openInFinalCutPro(const QString &fcpxml) const;

    // Starts DaVinci Resolve without a file; nothing happens when it is not installed.
    void launchResolve() const;

private:
    void openWithPremiere(const QString &file) const;

    Workspace &m_workspace;
    QString m_temporaryDirectory;
    EditorLocations m_locations;
};
