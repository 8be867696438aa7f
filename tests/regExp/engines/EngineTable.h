#pragma once

#include <cstddef>
#include <string>

namespace Toolkit::TestSupport {

/// The functions of the namespace `Pcre` as implemented by one engine.
struct EngineTable {
    std::string (*getVersion)();
    void* (*compile)(const char* pattern, const char*& errorText, int& errorOffset);
    void (*free)(void* code);
    int (*execute)(void* code, const char* subject, std::size_t length, std::size_t startOffset,
                   int options, int* offsets, int offsetCount);
    int (*getNameCount)(const void* code, int& count);
    int (*getNameEntrySize)(const void* code, int& size);
    int (*getNameTable)(const void* code, const unsigned char*& table);
};

extern const EngineTable c_pcre;
extern const EngineTable c_pcre2;

/// The engine that the functions of `Pcre` currently call in this program.
extern const EngineTable* s_engine;

} // namespace Toolkit::TestSupport
