#pragma once

#include <cstdint>

// dyld(3)
extern "C" int _NSGetExecutablePath(char* buffer, uint32_t* size);
