// A library for DynamicLibraryTest that needs a function that does not exist.

extern "C" void UndefinedFunction();

extern "C" __attribute__((visibility("default"))) void UnresolvedCall()
{
    UndefinedFunction();
}
