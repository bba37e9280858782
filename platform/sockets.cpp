#include <platform/sockets.h>

namespace platform {

Sockets::~Sockets() = default;

}  // namespace platform
