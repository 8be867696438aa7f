// The functions of the namespace `Pcre` for a program with both engines. They call the engine that
// `s_engine` selects.

#include "toolkit/regExp/PatternEngine.Private.h"

#include "regExp/engines/EngineTable.h"

namespace Toolkit::TestSupport {

const EngineTable* s_engine = &c_pcre;

} // namespace Toolkit::TestSupport

namespace Toolkit::Pcre {

using TestSupport::s_engine;

std::string GetVersion()
{
    return s_engine->getVersion();
}

void* Compile(const char* pattern, const char*& errorText, int& errorOffset)
{
    return s_engine->compile(pattern, errorText, errorOffset);
}

void Free(void* code)
{
    s_engine->free(code);
}

int Execute(void* code, const char* subject, std::size_t length, std::size_t startOffset,
            int options, int* offsets, int offsetCount)
{
    return s_engine->execute(code, subject, length, startOffset, options, offsets, offsetCount);
}

int GetNameCount(const void* code, int& count)
{
    return s_engine->getNameCount(code, count);
}

int GetNameEntrySize(const void* code, int& size)
{
    return s_engine->getNameEntrySize(code, size);
}

int GetNameTable(const void* code, const unsigned char*& table)
{
    return s_engine->getNameTable(code, table);
}

} // namespace Toolkit::Pcre
