vorlix_add_test(tst_model SOURCES model/ModelTest.cpp support/TestData.h)
vorlix_add_test(tst_clipmatcher SOURCES model/ClipMatcherTest.cpp support/TestData.h)
