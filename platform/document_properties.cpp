#include <platform/document_properties.h>

namespace platform {

DocumentProperties::~DocumentProperties() = default;

}  // namespace platform
