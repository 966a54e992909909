vorlix_add_test(tst_timecode SOURCES timecode/TimecodeTest.cpp)
vorlix_add_test(tst_clipmatcher SOURCES timecode/ClipMatcherTest.cpp)
