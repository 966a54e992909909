vorlix_add_test(tst_transcript_logic SOURCES ui/transcript/TranscriptLogicTest.cpp LIBS vorlix_ui)
vorlix_add_test(tst_transcript_view SOURCES ui/transcript/TranscriptViewTest.cpp ui/transcript/TranscriptDriver.h LIBS vorlix_ui)
