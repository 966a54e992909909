vorlix_add_test(tst_mediascanner SOURCES media/MediaScannerTest.cpp media/MediaFixtures.h)
vorlix_add_test(tst_footagescanner SOURCES media/FootageScannerTest.cpp media/MediaFixtures.h)
vorlix_add_test(tst_audiotrackselector SOURCES media/AudioTrackSelectorTest.cpp media/MediaFixtures.h)
