toolkit_private_test(system/LocalePatternsTest.cpp system/LocalePatterns.cpp)
toolkit_test(system/LocalesTest.cpp)
toolkit_test(system/MacCocoaTest.cpp)
toolkit_test(system/NetworkTest.cpp)
