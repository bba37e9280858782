#include <kestra/text/document_title.h>

#include <cstring>
#include <memory>
#include <vector>

#include <dorsel/paths.h>
#include <platform/document_properties.h>

namespace {

using platform::DocumentProperty;

constexpr int invalidPointer = static_cast<int>(0x80030009);
constexpr DocumentProperty properties[] = {DocumentProperty::title, DocumentProperty::subject,
                                           DocumentProperty::comments, DocumentProperty::author};
constexpr std::size_t authorIndex = 3;

struct FreeText {
    void operator()(char* text) const { platform::freePropertyText(text); }
};
using Text = std::unique_ptr<char, FreeText>;

/// True when each wanted text is the one stored; a text that is not stored differs from any.
bool areStored(const char* path, const char* const wanted[4]) {
    char* values[4] = {};
    if (GetTitreNTFS(path, values) < 0) return false;
    bool same = true;
    for (std::size_t i = 0; i < std::size(properties); ++i) {
        const Text stored(values[i]);
        same = same &&
               (wanted[i] == nullptr || (stored != nullptr && std::strcmp(wanted[i], stored.get()) == 0));
    }
    return same;
}

}  // namespace

int GetTitreNTFS(const char* path, char* values[4]) {
    if (path == nullptr || values == nullptr) return invalidPointer;
    std::unique_ptr<platform::DocumentProperties> document;
    const int result = platform::openDocumentProperties(path, platform::PropertyAccess::read, document);
    return result < 0 ? result : document->read(properties, values);
}

int SetTitreNTFS(const char* path, const char* title, const char* subject, const char* comments) {
    if (path == nullptr) return invalidPointer;
    const char* const wanted[] = {title, subject, comments, DOS::ComputerName()};
    // Looked at before the file is opened for writing, which alone would change its date.
    if (areStored(path, wanted)) return 0;
    std::unique_ptr<platform::DocumentProperties> document;
    const int result = platform::openDocumentProperties(path, platform::PropertyAccess::write, document);
    if (result < 0) return result;

    std::vector<platform::PropertyText> texts;
    for (std::size_t i = 0; i < std::size(properties); ++i) {
        const bool given = wanted[i] != nullptr && (i != authorIndex || *wanted[i] != '\0');
        if (given) texts.push_back({properties[i], wanted[i]});
    }
    return document->write(texts);
}
