// A library for DynamicLibraryTest that reports when it is unloaded.

namespace {

int* s_unloadCount = nullptr;

struct UnloadWitness {
    ~UnloadWitness()
    {
        if (s_unloadCount)
            ++*s_unloadCount;
    }
};
UnloadWitness s_witness;

} // namespace

extern "C" __attribute__((visibility("default"))) int ProbeAnswer()
{
    return 42;
}

extern "C" __attribute__((visibility("default"))) void ProbeCountUnloads(int* count)
{
    s_unloadCount = count;
}
