// A library that is not a plug-in, because it does not export GetHostPlugIn().

extern "C" __attribute__((visibility("default"))) int GetSomethingElse()
{
    return 1;
}
