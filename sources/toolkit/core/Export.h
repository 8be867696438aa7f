#pragma once

/// Marks what a program may use. Everything else stays inside the library, which is built with
/// hidden visibility.
///
/// Class templates carry it too: without it every module that includes the header would have its
/// own type information, and an exception of one module would not be caught in another.
#define TOOLKIT_API __attribute__((visibility("default")))
