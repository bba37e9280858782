#pragma once
#include <string>
#include <string_view>
#include <utility>

#include <platform/ado/types.h>
#include <platform/export.h>

namespace ado20 {

/// A failure of ADO, as every call of <platform/ado/ado.h> throws it: the HRESULT, a description in French
/// (Windows-1252) and the name of the object that failed.
///
/// Nothing else is thrown by those calls but `std::bad_alloc`.
class DORSEL_API _com_error {
  public:
    /// An error without a description of its own has the engine's text for its code, or "" where there is
    /// none.
    explicit _com_error(HResult code);
    _com_error(HResult code, std::string description, std::string source = {})
        : m_code(code), m_description(std::move(description)), m_source(std::move(source)) {}

    HResult Error() const { return m_code; }
    /// Never null; "" when the error has no description.
    const std::string& Description() const { return m_description; }
    const std::string& Source() const { return m_source; }
    /// The system's words for the code, "Erreur 0x........" where it has none.
    std::string ErrorMessage() const;

  private:
    HResult m_code;
    std::string m_description;
    std::string m_source;
};

}  // namespace ado20
using ado20::_com_error;
