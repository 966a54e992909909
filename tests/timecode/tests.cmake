vorlix_add_test(tst_timecode SOURCES timecode/TimecodeTest.cpp timecode/CaseTable.h)
vorlix_add_test(tst_clipmatcher SOURCES timecode/ClipMatcherTest.cpp timecode/CaseTable.h)
