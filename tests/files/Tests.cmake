toolkit_test(files/FFileTest.cpp)
toolkit_test(files/InputStreamTest.cpp)
toolkit_test(files/TextFileTest.cpp)
toolkit_test(files/TextInputStreamTest.cpp)
