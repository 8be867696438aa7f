// A library that is no plug-in: it exports something else.

extern "C" __attribute__((visibility("default"))) int GetSomethingElse()
{
    return 1;
}
