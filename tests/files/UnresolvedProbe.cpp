// A library for DynamicLibraryTest, which needs a function that does not exist.

extern "C" void FunctionThatNobodyHas();

extern "C" __attribute__((visibility("default"))) void UnresolvedCall()
{
    FunctionThatNobodyHas();
}
