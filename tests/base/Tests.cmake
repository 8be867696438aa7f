toolkit_private_test(base/FileDescriptorTest.cpp base/FileDescriptor.cpp)
toolkit_private_test(
    base/FileReplacementTest.cpp base/FileDescriptor.cpp base/FileReplacement.cpp
)
toolkit_private_test(
    base/FileLockTest.cpp base/FileDescriptor.cpp base/FileLock.cpp base/Fork.cpp
    base/OwnDescriptor.cpp
)
toolkit_private_test(
    base/FloatingPointTest.cpp base/FloatingPoint.cpp base/FloatingPoint.FromChars.cpp
)
toolkit_private_test(
    base/InstanceLockTest.cpp base/FileDescriptor.cpp base/FileLock.cpp base/Fork.cpp
    base/InstanceLock.cpp base/OwnDescriptor.cpp base/ShortenName.cpp base/UserAccount.cpp base/Utf8.cpp
)
toolkit_private_test(base/LineSplitterTest.cpp base/LineSplitter.cpp)
toolkit_private_test(base/OutOfMemoryTest.cpp)
toolkit_private_test(
    base/OwnDescriptorTest.cpp base/FileDescriptor.cpp base/Fork.cpp base/OwnDescriptor.cpp
)
toolkit_private_test(base/ShortenNameTest.cpp base/ShortenName.cpp)
toolkit_private_test(
    base/StackSpaceTest.cpp base/StackSpace.$<IF:$<PLATFORM_ID:Darwin>,Mac,Linux>.cpp
    base/StackSpace.cpp
)
