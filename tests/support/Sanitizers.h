#pragma once

// TOOLKIT_ADDRESS_SANITIZER and TOOLKIT_THREAD_SANITIZER are defined in a build under that
// sanitizer, TOOLKIT_SANITIZER under either. GCC announces its sanitizers with macros,
// Clang with __has_feature.

#ifdef __has_feature
#define TOOLKIT_HAS_FEATURE(name) __has_feature(name)
#else
#define TOOLKIT_HAS_FEATURE(name) 0
#endif

#if defined(__SANITIZE_ADDRESS__) || TOOLKIT_HAS_FEATURE(address_sanitizer)
#define TOOLKIT_ADDRESS_SANITIZER
#define TOOLKIT_SANITIZER
#endif

#if defined(__SANITIZE_THREAD__) || TOOLKIT_HAS_FEATURE(thread_sanitizer)
#define TOOLKIT_THREAD_SANITIZER
#define TOOLKIT_SANITIZER
#endif

#undef TOOLKIT_HAS_FEATURE
