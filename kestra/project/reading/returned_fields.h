#pragma once
#include <string>
#include <string_view>

#include <platform/arrays.h>

namespace kestra {

/// One field as it is handed to callers: the byte 0x02 turned back into ";", and in values (index 2 and
/// beyond) the relative paths expanded against `folder`.
CString returnedField(std::string_view field, int index, const std::string& folder);

/// Appends the fields of a line from field `first` on, at most `maximum` of the line's fields counted from
/// its start (0 or less: all).
void appendFields(CStringArray& out, std::string_view line, int first, int maximum,
                  const std::string& folder);

}  // namespace kestra
