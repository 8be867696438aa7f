toolkit_test(threading/MutexTest.cpp)
