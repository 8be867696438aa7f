// Loads the library named by its argument and unloads it, twice. The library allocates and frees
// its registry with this program's operator new and operator delete, so the program notices when
// the registry is deleted.

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <new>

namespace {

const void* s_registry = nullptr;

void Free(void* memory)
{
    if (memory && memory == s_registry) {
        std::puts("registry deleted");
        s_registry = nullptr;
    }
    std::free(memory);
}

bool LoadAndUnload(const char* path)
{
    void* const library = ::dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        std::fprintf(stderr, "%s\n", ::dlerror());
        return false;
    }
    void* const* const registry =
        static_cast<void* const*>(::dlsym(library, "_ZN7Toolkit16LibModuleManager11s_pInstanceE"));
    if (!registry || !*registry || !::dlsym(library, "DllToolkitLoad"))
        return false;
    s_registry = *registry;
    std::puts("loaded");

    ::dlclose(library);
    if (::dlopen(path, RTLD_NOW | RTLD_NOLOAD))
        return false;
    std::puts("unloaded");
    return true;
}

} // namespace

void* operator new(std::size_t size)
{
    if (void* const memory = std::malloc(size > 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    Free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    Free(memory);
}

int main(int argc, char** argv)
{
    return argc == 2 && LoadAndUnload(argv[1]) && LoadAndUnload(argv[1]) ? 0 : 1;
}
