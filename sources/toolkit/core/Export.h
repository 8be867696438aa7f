#pragma once

/// Marks what a program may use. Everything else stays inside the library, which is built with
/// hidden visibility.
///
/// Class templates carry it too. Without it, each module that includes the header has its own type
/// information, and an exception thrown in one module is not caught in another.
#define TOOLKIT_API __attribute__((visibility("default")))
