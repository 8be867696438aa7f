toolkit_test(files/FFileTest.cpp)
