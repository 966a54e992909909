target_sources(vorlix_ui PRIVATE
  ui/shell/ContentView.cpp
  ui/shell/ContentView.h
  ui/shell/EmptyStateView.cpp
  ui/shell/EmptyStateView.h
  ui/shell/ServiceLinks.cpp
  ui/shell/ServiceLinks.h
  ui/shell/ServiceShellBackend.cpp
  ui/shell/ServiceShellBackend.h
  ui/shell/ShellBackend.h
  ui/shell/SignOut.cpp
  ui/shell/SignOut.h
  ui/shell/SignedInView.cpp
  ui/shell/SignedInView.h
  ui/shell/VorlixCompanionApp.cpp
  ui/shell/VorlixCompanionApp.h
  ui/shell/WidgetDesktop.cpp
  ui/shell/WidgetDesktop.h)
