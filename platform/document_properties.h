#pragma once
#include <array>
#include <cstdint>
#include <memory>
#include <span>

#include <platform/export.h>

/// The summary properties that the system keeps beside a file: an OLE property set on Windows, extended
/// attributes (user.kestra.title, ...) elsewhere. Results are HRESULTs on both sides: negative is a failure.
namespace platform {

/// Identifiers of the summary-information set.
enum class DocumentProperty : std::uint32_t { title = 2, subject = 3, author = 4, comments = 6 };

constexpr std::int32_t propertiesNotSupported =
    static_cast<std::int32_t>(0x80030050);  ///< STG_E_FILEALREADYEXISTS
constexpr std::int32_t propertiesNotFound = static_cast<std::int32_t>(0x80030002);  ///< STG_E_FILENOTFOUND
constexpr std::int32_t propertiesAccessDenied =
    static_cast<std::int32_t>(0x80030005);  ///< STG_E_ACCESSDENIED
constexpr std::int32_t propertiesTooLarge =
    static_cast<std::int32_t>(0x80030070);  ///< STG_E_MEDIUMFULL: no room for texts of this length

struct PropertyText {
    DocumentProperty property;
    const char* text;  ///< Windows-1252
};

/// The properties of one file, open until the object ends.
class DORSEL_API DocumentProperties {
  public:
    virtual ~DocumentProperties();
    /// Gives for each property its text (to be freed with `freePropertyText`) or null when it has none.
    /// Nothing is given on failure.
    virtual std::int32_t read(std::span<const DocumentProperty> properties, char** texts) = 0;
    virtual std::int32_t write(std::span<const PropertyText> texts) = 0;
};

enum class PropertyAccess {
    read,   ///< fails when the file has no properties
    write,  ///< makes an empty set when there is none
};

DORSEL_API std::int32_t openDocumentProperties(const char* path, PropertyAccess access,
                                               std::unique_ptr<DocumentProperties>& properties);
DORSEL_API void freePropertyText(char* text);

}  // namespace platform
