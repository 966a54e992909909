vorlix_add_test(tst_state SOURCES state/AppStateTest.cpp support/TestData.h)
