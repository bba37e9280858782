#include <string>
#include <vector>

#include <kestra/net/base64.h>
#include <kestra/net/base64_code.h>

#include "side_by_side.h"

#if __has_include(<openssl/evp.h>)
#include <openssl/evp.h>
#endif

/// 100 MB in memory, with line breaks.
int main() {
    std::vector<unsigned char> bytes(100'000'000);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i * 2654435761u >> 13);
    const int size = static_cast<int>(bytes.size());
    std::vector<unsigned char> out(bytes.size() / 48 * 66 + 1024);

    Base64Encoder encoder;
    const auto ours = [&] { bench::keep(*encoder.Encode(bytes.data(), size, 0)); };
#if __has_include(<openssl/evp.h>)
    bench::sideBySide("Base64, 100 MB with line breaks", 0.8, ours, "EVP_EncodeUpdate", [&] {
        EVP_ENCODE_CTX* context = EVP_ENCODE_CTX_new();
        int length = 0;
        EVP_EncodeInit(context);
        EVP_EncodeUpdate(context, out.data(), &length, bytes.data(), size);
        EVP_ENCODE_CTX_free(context);
        bench::keep(out);
    });
#endif
    bench::sideBySide("Base64, 100 MB with line breaks", 0, ours, "the same, plain code", [&] {
        base64::encodeWith(base64::Instructions::plain, bytes.data(), bytes.size(), 0,
                           reinterpret_cast<char*>(out.data()));
        bench::keep(out);
    });
}
