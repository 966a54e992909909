vorlix_add_test(tst_state SOURCES state/AppStateTest.cpp support/TestData.h)
vorlix_add_test(tst_sessionlibrary SOURCES state/SessionLibraryTest.cpp support/TestData.h)
