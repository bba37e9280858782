#include <cstdint>
#include <cstdlib>
#include <string>

#include <kestra/net/base64_code.h>

/// The first byte gives the flags, the rest is encoded: the wide forms must give what the plain one gives,
/// and none may need more than the room computed before.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const unsigned long flags = data[0] & 3u;
    const auto encoded = [&](base64::Instructions instructions) {
        std::string out(base64::room(size - 1, flags), '\0');
        out.resize(base64::encodeWith(instructions, data + 1, size - 1, flags, out.data()));
        return out;
    };
    const std::string plain = encoded(base64::Instructions::plain);
    if (encoded(base64::widest()) != plain) std::abort();
    if (base64::widest() != base64::Instructions::plain && encoded(base64::Instructions::ssse3) != plain)
        std::abort();
    return 0;
}
