toolkit_test(config/CmdLineParserTest.cpp)
toolkit_test(config/CmdLineReferenceTest.cpp)
