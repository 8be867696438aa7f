#pragma once

// Minimal declarations for MacCocoa.mm, as in Apple's AppKit documentation.

typedef signed char BOOL;

extern "C" BOOL NSApplicationLoad();
