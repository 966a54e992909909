vorlix_add_test(tst_state SOURCES state/AppStateTest.cpp timecode/CaseTable.h)
