#pragma once

/// Marks what the shared library exports: the published classes and their bases, nothing else.
#if defined(_WIN32)
#if defined(VNZEL10CMN_EXPORTS)
#define VNZEL10CMN_API __declspec(dllexport)
#else
#define VNZEL10CMN_API
#endif
#else
#define VNZEL10CMN_API __attribute__((visibility("default")))
#endif
