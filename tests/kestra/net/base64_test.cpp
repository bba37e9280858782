#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <kestra/net/base64.h>
#include <kestra/net/base64_code.h>
#include <platform/arrays.h>

namespace {

std::string encoded(std::string_view bytes, unsigned long flags = 0) {
    Base64Encoder encoder;
    return encoder.Encode(reinterpret_cast<const unsigned char*>(bytes.data()),
                          static_cast<int>(bytes.size()), flags);
}

/// Bit by bit, without the encoder's structure: what the characters stand for, breaks and padding left out.
std::string decoded(std::string_view text) {
    static const std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned bits = 0, held = 0;
    for (const char character : text) {
        const std::size_t value = alphabet.find(character);
        if (value == std::string_view::npos) continue;
        bits = bits << 6 | static_cast<unsigned>(value);
        held += 6;
        if (held >= 8) bytes += static_cast<char>(bits >> (held -= 8));
    }
    return bytes;
}

}  // namespace

TEST(Base64, ShortTextsAndFlags) {
    const std::tuple<const char*, unsigned long, const char*> cases[] = {
        {"", 0, ""}, {"ab", 1, "YWI"}, {"a", 3, "YQ"}, {"\xFF\xFE", 0, "//4="}, {"foobar", 2, "Zm9vYmFy"}};
    for (const auto& [bytes, flags, text] : cases) EXPECT_EQ(encoded(bytes, flags), text) << bytes;
}

TEST(Base64, KeptALastLineThatIsFullKeepsItsLineEnd) {
    const std::tuple<std::size_t, std::size_t, const char*> cases[] = {
        {56, 76, "A="}, {57, 78, "AA\r\n"}, {58, 82, "\r\nAA=="}, {114, 156, "A\r\n"}, {113, 154, "A="}};
    for (const auto& [count, length, end] : cases) {
        // A NUL as first byte must not make the encoder measure the text: the length is not 0.
        const std::string text = encoded(std::string(count, '\0'));
        EXPECT_TRUE(text.size() == length && text.ends_with(end)) << count << ": " << text;
    }
}

TEST(Base64, EveryFormDecodesToItsInputForAllLengths) {
    std::vector<base64::Instructions> forms = {base64::Instructions::plain};
    if (base64::widest() != base64::Instructions::plain) forms.push_back(base64::Instructions::ssse3);
    if (base64::widest() == base64::Instructions::avx2) forms.push_back(base64::Instructions::avx2);
    std::string bytes(400, '\0');
    std::minstd_rand random;
    for (char& byte : bytes) byte = static_cast<char>(random());
    for (std::size_t count = 0; count <= bytes.size(); ++count) {
        const std::vector<unsigned char> exact(bytes.begin(),
                                               bytes.begin() + static_cast<std::ptrdiff_t>(count));
        for (const auto form : forms) {
            for (unsigned long flags = 0; flags < 4; ++flags) {
                std::string out(base64::room(count, flags), '?');
                out.resize(base64::encodeWith(form, exact.data(), count, flags, out.data()));
                ASSERT_EQ(decoded(out), std::string_view(bytes).substr(0, count)) << count << ' ' << flags;
                ASSERT_EQ(out.find('\r') == std::string::npos, (flags & 2) != 0 || count < 57);
                ASSERT_EQ(out.find('=') == std::string::npos, (flags & 1) != 0 || count % 3 == 0);
                for (std::size_t line = 76; (flags & 2) == 0 && line + 2 <= out.size(); line += 78)
                    ASSERT_EQ(out.substr(line, 2), "\r\n") << count;
            }
        }
    }
}

TEST(Base64, OneBufferMeasuredTextsAndRefusedLengths) {
    Base64Encoder encoder;
    const auto* text = reinterpret_cast<const unsigned char*>("Man\0hidden");
    EXPECT_STREQ(encoder.Encode(text, 0, 0), "TWFu");
    EXPECT_STREQ(encoder.Encode(nullptr, 0, 0), "");
    char* last = encoder.Encode(text, 3, 0);
    EXPECT_THROW(encoder.Encode(text, 536870912, 0), CInvalidArgException);
    EXPECT_THROW(encoder.Encode(text, -1, 0), CInvalidArgException);
    EXPECT_STREQ(last, "TWFu");
}
