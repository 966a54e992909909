vorlix_add_test(tst_mediascanner SOURCES media/MediaScannerTest.cpp media/MediaFixtures.h)
