#pragma once
/// What the two shared libraries show. `DORSEL_API` marks the names of the base module (platform and dorsel),
/// `KESTRA_API` those of the library. A room that is part of a module is compiled with `<MODULE>_BUILD`;
/// everybody else sees plain declarations, which both linkers resolve against the shared or the static form.
#if defined(_WIN32)
#if defined(DORSEL_BUILD)
#define DORSEL_API __declspec(dllexport)
#else
#define DORSEL_API
#endif
#if defined(KESTRA_BUILD)
#define KESTRA_API __declspec(dllexport)
#else
#define KESTRA_API
#endif
#else
#define DORSEL_API __attribute__((visibility("default")))
#define KESTRA_API __attribute__((visibility("default")))
#endif

/// Has the compiler check the arguments of a printf-like function: the format is argument `format`, the
/// values begin at argument `first`, both counted from 1 with `this`.
#if defined(__clang__)
#define KESTRA_PRINTF(format, first) __attribute__((__format__(printf, format, first)))
#else
#define KESTRA_PRINTF(format, first) __attribute__((__format__(gnu_printf, format, first)))
#endif
