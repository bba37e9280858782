#pragma once
#include <platform/cstring.h>
#include <platform/export.h>

// A plain name that returns a class: hosts of the same compiler only, as with every exported class.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif

/// The local date and time as display text, "dd/mm/yyyy hh:mm:ss" and a line feed, which is part of the
/// result. When the local time cannot be computed the date parts are 0 and the time parts -1:
/// "00/00/0 -1:-1:-1" and the line feed.
extern "C" KESTRA_API CString GetCurDate();

#ifdef __clang__
#pragma clang diagnostic pop
#endif
