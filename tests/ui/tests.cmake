vorlix_add_test(tst_ui_logic SOURCES ui/UiLogicTest.cpp LIBS vorlix_ui)
