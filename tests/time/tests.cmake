vorlix_add_test(tst_time SOURCES time/TimecodeTest.cpp support/TestData.h)
