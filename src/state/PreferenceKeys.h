#pragma once

#include <QString>

// The keys of the per-user preferences store. Changing one loses every user's stored value.
namespace PreferenceKeys {
inline const QString footageFolders = QStringLiteral("vorlix_footage_folders");
inline const QString preferredNLE = QStringLiteral("vorlix_nle");
inline const QString appearance = QStringLiteral("vorlix_appearance");
inline const QString defaultFps = QStringLiteral("vorlix_default_fps");
inline const QString email = QStringLiteral("vorlix_email");
inline const QString name = QStringLiteral("vorlix_name");
// Where the file dialogs opened last: footage (scan and analysis) and exported documents.
inline const QString footageDialogFolder = QStringLiteral("vorlix_footage_dialog_folder");
inline const QString exportDialogFolder = QStringLiteral("vorlix_export_dialog_folder");
inline const QString deletedSessions = QStringLiteral("vorlix_deleted_sessions_v2");
// The earlier form of the deleted list: bare session ids. Migrated once at start.
inline const QString legacyDeletedSessions = QStringLiteral("vorlix_deleted_sessions");
} // namespace PreferenceKeys
