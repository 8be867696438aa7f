#pragma once

// The application functions of the AppKit reference

typedef signed char BOOL;

extern "C" BOOL NSApplicationLoad();
