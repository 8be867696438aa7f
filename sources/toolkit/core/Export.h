#pragma once

/// Marks what a program may use. Everything else stays inside the library, which is built with
/// hidden visibility.
///
/// Class templates carry it too. Without it, each module that includes the header has its own type
/// information and its own copies of static members: an exception might not be caught in another
/// module, and one process-wide object becomes several.
#define TOOLKIT_API __attribute__((visibility("default")))
