// A library for DynamicLibraryTest. It calls a function that does not exist.

extern "C" void UndefinedFunction();

extern "C" __attribute__((visibility("default"))) void UnresolvedCall()
{
    UndefinedFunction();
}
