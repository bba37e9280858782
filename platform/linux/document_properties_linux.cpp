#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <platform/cp1252.h>
#include <platform/document_properties.h>

#include "drive_paths.h"

namespace platform {
namespace {

std::int32_t resultOf(int error) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
        case ENODATA:
            return propertiesNotFound;
        case EACCES:
        case EPERM:
        case EROFS:
            return propertiesAccessDenied;
        case ENOSPC:
        case EDQUOT:
        case E2BIG:
        case ERANGE:
            return propertiesTooLarge;
        default:
            return propertiesNotSupported;
    }
}

const char* attributeOf(DocumentProperty property) {
    switch (property) {
        case DocumentProperty::title:
            return "user.kestra.title";
        case DocumentProperty::subject:
            return "user.kestra.subject";
        case DocumentProperty::author:
            return "user.kestra.author";
        case DocumentProperty::comments:
            break;
    }
    return "user.kestra.comments";
}

/// Values are UTF-8 on disk, as names are.
std::optional<std::string> stored(const std::string& path, DocumentProperty property) {
    char value[65536];  // the system's limit
    const ssize_t size = ::getxattr(path.c_str(), attributeOf(property), value, sizeof value);
    if (size < 0) return std::nullopt;
    return std::string(value, static_cast<std::size_t>(size));
}

bool store(const std::string& path, DocumentProperty property, const std::string& value) {
    return ::setxattr(path.c_str(), attributeOf(property), value.data(), value.size(), 0) == 0;
}

class Attributes : public DocumentProperties {
  public:
    explicit Attributes(std::string path) : m_path(std::move(path)) {}

    std::int32_t read(std::span<const DocumentProperty> properties, char** texts) override {
        for (const DocumentProperty property : properties) {
            const auto value = stored(m_path, property);
            *texts++ = value ? ::strdup(cp1252FromUtf8(*value).c_str()) : nullptr;
        }
        return 0;
    }
    std::int32_t write(std::span<const PropertyText> texts) override {
        std::vector<std::pair<DocumentProperty, std::optional<std::string>>> before;
        for (const PropertyText& text : texts) {
            before.emplace_back(text.property, stored(m_path, text.property));
            if (store(m_path, text.property, utf8From1252(text.text))) continue;
            const std::int32_t result = resultOf(errno);
            for (const auto& [property, value] : before) restore(property, value);
            return result;
        }
        return 0;
    }

  private:
    void restore(DocumentProperty property, const std::optional<std::string>& value) {
        if (value)
            store(m_path, property, *value);
        else
            ::removexattr(m_path.c_str(), attributeOf(property));
    }

    std::string m_path;
};

bool hasProperties(const std::string& path) {
    for (const auto property : {DocumentProperty::title, DocumentProperty::subject, DocumentProperty::author,
                                DocumentProperty::comments})
        if (::getxattr(path.c_str(), attributeOf(property), nullptr, 0) >= 0) return true;
    return false;
}

}  // namespace

std::int32_t openDocumentProperties(const char* path, PropertyAccess access,
                                    std::unique_ptr<DocumentProperties>& properties) {
    const std::string name = posixPath(path);
    struct stat status;
    if (::stat(name.c_str(), &status) != 0) return resultOf(errno);
    if (!S_ISREG(status.st_mode)) return propertiesAccessDenied;
    if (::listxattr(name.c_str(), nullptr, 0) < 0) return resultOf(errno);
    if (access == PropertyAccess::read && !hasProperties(name)) return propertiesNotFound;
    properties = std::make_unique<Attributes>(name);
    return 0;
}

void freePropertyText(char* text) {
    std::free(text);
}

}  // namespace platform
