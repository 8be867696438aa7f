toolkit_private_test(base/FittingNameTest.cpp base/FittingName.cpp)
toolkit_private_test(base/OutOfMemoryTest.cpp)
toolkit_private_test(
    base/StackSpaceTest.cpp base/StackSpace.$<IF:$<PLATFORM_ID:Darwin>,Mac,Linux>.cpp
    base/StackSpace.cpp
)
