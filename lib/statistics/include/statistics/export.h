#pragma once

/// `STATISTICS_EXPORT` marks what a host may call. Nothing else leaves the library.
///
/// `STATISTICS_STATIC` comes with the static library's usage requirements (CMake target, pkg-config file).
/// `STATISTICS_BUILDING` is set while the shared library itself is compiled.
#if defined(STATISTICS_STATIC)
#define STATISTICS_EXPORT
#elif defined(_WIN32) && defined(STATISTICS_BUILDING)
#define STATISTICS_EXPORT __declspec(dllexport)
#elif defined(_WIN32)
#define STATISTICS_EXPORT __declspec(dllimport)
#else
#define STATISTICS_EXPORT __attribute__((visibility("default")))
#endif
