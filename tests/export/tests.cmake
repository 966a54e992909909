vorlix_add_test(tst_exportdocuments SOURCES export/ExportDocumentsTest.cpp support/TestData.h)
vorlix_add_test(tst_exportproperties SOURCES export/ExportPropertiesTest.cpp)
vorlix_add_test(tst_editorhandoff SOURCES export/EditorHandoffTest.cpp export/RecordingWorkspace.h)
vorlix_add_test(tst_exportcli SOURCES export/ExportCliTest.cpp support/TestData.h cli/CliRunner.h)
add_dependencies(tst_exportcli vorlix-sync-cli)
# The cases build their records with designated initialisers that name only the fields they set.
foreach(test tst_exportdocuments tst_exportproperties tst_exportcli)
  target_compile_options(${test} PRIVATE $<$<NOT:$<CXX_COMPILER_ID:MSVC>>:-Wno-missing-field-initializers>)
endforeach()
