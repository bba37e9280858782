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
