vorlix_add_test(tst_model SOURCES model/ModelTest.cpp support/TestData.h)
