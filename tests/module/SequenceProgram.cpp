// Prints the order in which the library constructs its objects at load and destroys them at unload.
// Shows only what is on the heap: the registry, which is constructed last, and the constants of
// more than three characters, which std::wstring cannot store inside itself.

#include "toolkit/module/LibModuleManager.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <malloc.h>
#include <new>

namespace {

constexpr std::size_t c_maxBlocks = 65536;

void* s_blocks[c_maxBlocks]; // blocks allocated during the load, in order
std::size_t s_blockCount = 0;
bool s_isLoading = true;
bool s_isUnloading = false;
const void* s_registry = nullptr;

bool Holds(void* block, const wchar_t* string)
{
    const std::size_t length = std::wcslen(string) + 1;
    return ::malloc_usable_size(block) >= length * sizeof(wchar_t) &&
           std::wmemcmp(static_cast<const wchar_t*>(block), string, length) == 0;
}

// Prints what the block holds if it is the registry or an expected string.
void PrintBlock(void* block)
{
    static const wchar_t* const strings[] = {
        L".qvlog",  L"config", L"ressources",
        L"plugins", L"cache",  L"{3F8A1C2D-7B4E-4d19-A6C5-0E9D2B7F4A31}"};
    if (block == s_registry)
        std::fputs(" registry", stdout);
    for (const wchar_t* const string : strings) {
        if (Holds(block, string))
            std::printf(" %ls", string);
    }
}

void FreeBlock(void* block)
{
    if (s_isUnloading && block)
        PrintBlock(block);
    if (s_isLoading && block)
        std::replace(s_blocks, s_blocks + s_blockCount, block, static_cast<void*>(nullptr));
    // The address may be reused.
    if (s_isUnloading && block == s_registry)
        s_registry = nullptr;
    std::free(block);
}

// The program's static objects are constructed after the library's, and destroyed before them.
class Program {
public:
    Program()
    {
        s_isLoading = false;
        s_registry = Toolkit::LibModuleManager::GetInstance();
    }
    ~Program()
    {
        std::fputs("unload:", stdout);
        s_isUnloading = true;
    }
};

const Program s_program;

} // namespace

void* operator new(std::size_t size)
{
    void* const block = std::malloc(size > 0 ? size : 1);
    if (!block)
        throw std::bad_alloc();
    if (s_isLoading && s_blockCount < c_maxBlocks)
        s_blocks[s_blockCount++] = block;
    return block;
}

void operator delete(void* block) noexcept
{
    FreeBlock(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept
{
    FreeBlock(block);
}

int main()
{
    std::fputs("load:", stdout);
    for (std::size_t block = 0; block < s_blockCount; ++block) {
        if (s_blocks[block])
            PrintBlock(s_blocks[block]);
    }
    std::puts("");
    return 0;
}
