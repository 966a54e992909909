target_sources(vorlix_ui PRIVATE
  ${CMAKE_SOURCE_DIR}/resources/resources.qrc
  ui/CoalescedRefresh.h ui/CoalescedRefresh.cpp
  ui/Theme.h ui/Theme.cpp
  ui/Icons.h ui/Icons.cpp
  ui/WidgetDesktop.h ui/WidgetDesktop.cpp
  ui/ServiceLinks.h ui/ServiceLinks.cpp
  ui/ShellBackend.h
  ui/LoginRules.h ui/LoginRules.cpp
  ui/SessionListLogic.h ui/SessionListLogic.cpp
  ui/SettingsLogic.h ui/SettingsLogic.cpp
  ui/SignOut.h ui/SignOut.cpp
  ui/SettingsActions.h ui/SettingsActions.cpp
  ui/SettingsControls.h ui/SettingsControls.cpp
  ui/widgets/Spinner.h ui/widgets/Spinner.cpp
  ui/widgets/ElidedLabel.h ui/widgets/ElidedLabel.cpp
  ui/LoginView.h ui/LoginView.cpp
  ui/SessionListModel.h ui/SessionListModel.cpp
  ui/SessionRowDelegate.h ui/SessionRowDelegate.cpp
  ui/SessionListView.h ui/SessionListView.cpp
  ui/EmptyStateView.h ui/EmptyStateView.cpp
  ui/SessionDetailView.h ui/SessionDetailView.cpp
  ui/InlineSettingsView.h ui/InlineSettingsView.cpp
  ui/SettingsView.h ui/SettingsView.cpp
  ui/SignedInView.h ui/SignedInView.cpp
  ui/ContentView.h ui/ContentView.cpp
  ui/ServiceShellBackend.h ui/ServiceShellBackend.cpp
  ui/VorlixCompanionApp.h ui/VorlixCompanionApp.cpp)
