vorlix_add_test(tst_timecode SOURCES timecode/TimecodeTest.cpp support/TestData.h)
vorlix_add_test(tst_clipmatcher SOURCES timecode/ClipMatcherTest.cpp support/TestData.h)
