vorlix_add_test(tst_analysisservice SOURCES analysis/AnalysisServiceTest.cpp media/MediaFixtures.h service/ServiceTestSupport.h support/TestData.h
  LIBS vorlix_service_standin)
vorlix_add_test(tst_analysiscli SOURCES analysis/AnalysisCliTest.cpp cli/CliRunner.h cli/StandinProcess.h media/MediaFixtures.h support/AwaitTask.h)
add_dependencies(tst_analysiscli vorlix-sync-cli vorlix-service-standin)
set_property(TEST tst_analysiscli APPEND PROPERTY ENVIRONMENT "VORLIX_STANDIN=$<TARGET_FILE:vorlix-service-standin>")
