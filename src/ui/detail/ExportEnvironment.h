#pragma once

#include "export/EditorHandoff.h"
#include "media/ToolLocations.h"
#include "platform/Workspace.h"

#include <QString>
#include <memory>

// What the exports reach outside the program: the workspace that opens files and applications,
// the folder the hand-off files go to, where the editing applications are installed, and where
// ffprobe is (the marker sequence asks it about the first clip's audio). The application
// chooses them once; tests give fake applications and folders of their own.
struct ExportEnvironment {
    std::shared_ptr<Workspace> workspace;
    QString temporaryDirectory;
    EditorLocations editors;
    ToolLocations tools;

    EditorHandoff handoff() const { return EditorHandoff(*workspace, temporaryDirectory, editors); }
};
