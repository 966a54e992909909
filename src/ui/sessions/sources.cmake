target_sources(vorlix_ui PRIVATE
  ui/sessions/SessionListBox.cpp
  ui/sessions/SessionListBox.h
  ui/sessions/SessionListLogic.cpp
  ui/sessions/SessionListLogic.h
  ui/sessions/SessionListModel.cpp
  ui/sessions/SessionListModel.h
  ui/sessions/SessionListView.cpp
  ui/sessions/SessionListView.h
  ui/sessions/SessionRowDelegate.cpp
  ui/sessions/SessionRowDelegate.h)
