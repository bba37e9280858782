#pragma once
#include <string_view>

namespace kestra {

/// Whether a search for `start` followed by "*.*" finds something: a folder ending in a separator that
/// exists, else a file or folder whose name begins so, without regard to case.
bool anyEntryBeginsWith(std::string_view start);

}  // namespace kestra
