toolkit_test(core/SmartPtrTest.cpp)
toolkit_test(core/TStringReferenceTest.cpp)
toolkit_test(core/TStringTest.cpp)
