// A library that is not a plug-in: it exports a different function.

extern "C" __attribute__((visibility("default"))) int GetSomethingElse()
{
    return 1;
}
