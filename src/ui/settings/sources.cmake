target_sources(vorlix_ui PRIVATE
  ui/settings/InlineSettingsView.cpp
  ui/settings/InlineSettingsView.h
  ui/settings/SettingsActions.cpp
  ui/settings/SettingsActions.h
  ui/settings/SettingsControls.cpp
  ui/settings/SettingsControls.h
  ui/settings/SettingsLogic.cpp
  ui/settings/SettingsLogic.h
  ui/settings/SettingsView.cpp
  ui/settings/SettingsView.h)
