// A library for DynamicLibraryTest, which needs a function that nobody has.

extern "C" void FunctionThatNobodyHas();

extern "C" __attribute__((visibility("default"))) void UnresolvedCall()
{
    FunctionThatNobodyHas();
}
