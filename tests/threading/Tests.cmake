toolkit_test(threading/EventObjectTest.cpp)
toolkit_test(threading/FrameworkHoldTest.cpp)
toolkit_test(threading/MutexTest.cpp)
toolkit_test(threading/ThreadTest.cpp)
