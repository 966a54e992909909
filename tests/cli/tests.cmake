vorlix_add_test(tst_cli SOURCES cli/CliTest.cpp cli/CliRunner.h support/TestData.h)
add_dependencies(tst_cli vorlix-sync-cli)
