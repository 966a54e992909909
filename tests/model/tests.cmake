vorlix_add_test(tst_model SOURCES model/ModelTest.cpp timecode/CaseTable.h)
