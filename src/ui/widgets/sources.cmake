target_sources(vorlix_ui PRIVATE
  ui/widgets/Buttons.cpp
  ui/widgets/Buttons.h
  ui/widgets/CoalescedRefresh.cpp
  ui/widgets/CoalescedRefresh.h
  ui/widgets/DialogFolders.cpp
  ui/widgets/DialogFolders.h
  ui/widgets/ElidedLabel.cpp
  ui/widgets/ElidedLabel.h
  ui/widgets/Icons.cpp
  ui/widgets/Icons.h
  ui/widgets/RowColumn.cpp
  ui/widgets/RowColumn.h
  ui/widgets/Spinner.cpp
  ui/widgets/Spinner.h
  ui/widgets/Theme.cpp
  ui/widgets/Theme.h
  ui/widgets/TrimSpacesAndTabs.h)
