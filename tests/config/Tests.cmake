toolkit_test(config/CmdLineParserTest.cpp)
toolkit_test(config/CmdLineReferenceTest.cpp)
toolkit_test(config/IniFileReferenceTest.cpp)
toolkit_test(config/IniFileTest.cpp)
