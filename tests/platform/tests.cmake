vorlix_add_test(tst_credentialstore SOURCES platform/CredentialStoreTest.cpp support/AwaitTask.h)
