vorlix_add_test(tst_transcript_logic SOURCES ui/transcript/TranscriptLogicTest.cpp support/TestData.h LIBS vorlix_ui)
