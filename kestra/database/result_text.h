#pragma once
#include <string>
#include <string_view>

#include <platform/ado/com_error.h>

/// What the operations of this room share.
namespace kestra {

/// The module-wide text that they answer with.
std::string& databaseText();
/// Puts a text there, which may be a piece of it, and returns it.
const char* keepDatabaseText(std::string_view text);

/// The failure that a catch (...) block handles: the database's own, E_OUTOFMEMORY, or E_FAIL for anything
/// else.
_com_error failureInFlight() noexcept;

}  // namespace kestra
