vorlix_add_test(tst_ui_logic SOURCES ui/UiLogicTest.cpp support/TestData.h LIBS vorlix_ui)
vorlix_add_test(tst_ui_shell SOURCES ui/SessionListTest.cpp ui/ShellFixture.h export/RecordingWorkspace.h LIBS vorlix_ui)
vorlix_add_test(tst_ui_service SOURCES ui/ServiceScreensTest.cpp ui/ShellFixture.h export/RecordingWorkspace.h media/MediaFixtures.h
  LIBS vorlix_ui vorlix_service_standin)
vorlix_add_test(tst_session_detail SOURCES ui/SessionDetailTest.cpp ui/ShellFixture.h support/TestData.h export/RecordingWorkspace.h LIBS vorlix_ui)
