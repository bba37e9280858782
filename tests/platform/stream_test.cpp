#include <gtest/gtest.h>

#include <string>

#include <platform/faulty_files.h>
#include <platform/stream.h>

#include "../support/temporary_folder.h"

using platform::OpenMode;
using platform::Stream;

namespace {

constexpr std::size_t bufferSize = Stream::bufferSize;

std::string pattern(std::size_t size) {
    std::string text(size, '\0');
    for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>(i * 31 + i / 251);
    return text;
}

}  // namespace

TEST(Stream, ReadsTheSameBytesWhereverTheBufferEnds) {
    const TemporaryFolder folder;
    for (const std::size_t size : {std::size_t{0}, bufferSize, 3 * bufferSize + 5}) {
        const std::string content = pattern(size);
        const auto stream = Stream::open(folder.write("f", content).c_str(), OpenMode::read);
        for (const std::size_t piece : {bufferSize, std::size_t{1000}, 2 * bufferSize + 1}) {
            stream->seek(0);
            std::string read, part(piece, '\0');
            while (const std::size_t got = stream->read(part.data(), piece)) read.append(part, 0, got);
            EXPECT_TRUE(read == content) << size << ' ' << piece;
            EXPECT_EQ(stream->tell(), static_cast<std::int64_t>(size));
        }
        EXPECT_TRUE(stream->available().empty() && !stream->failed());
    }
}

TEST(Stream, SeeksInAndOutOfTheBuffer) {
    const TemporaryFolder folder;
    const std::string content = pattern(2 * bufferSize + 100);
    const auto stream = Stream::open(folder.write("f", content).c_str(), OpenMode::read);
    const std::size_t size = content.size();
    for (const std::size_t offset :
         {std::size_t{5}, bufferSize, bufferSize + 7, std::size_t{0}, size - 1, bufferSize - 1}) {
        stream->seek(static_cast<std::int64_t>(offset));
        const std::string_view bytes = stream->available(500);
        ASSERT_GE(bytes.size(), std::min<std::size_t>(500, size - offset)) << offset;
        EXPECT_TRUE(content.compare(offset, bytes.size(), bytes) == 0) << offset;
    }
    stream->seek(static_cast<std::int64_t>(size) + 10);
    EXPECT_TRUE(stream->available().empty());
    stream->skip(5);
    EXPECT_EQ(stream->tell(), static_cast<std::int64_t>(size) + 10);
    stream->seek(-1);
    EXPECT_EQ(stream->tell(), 0);
}

TEST(Stream, WritesAreReadBackAndMoveThePosition) {
    const TemporaryFolder folder;
    const auto stream = Stream::open(folder.path("f").c_str(), OpenMode::create);
    EXPECT_TRUE(stream->write("abcdef", 6));
    stream->seek(0);
    EXPECT_EQ(stream->available(), "abcdef");
    stream->skip(2);
    EXPECT_TRUE(stream->write("XY", 2));
    EXPECT_EQ(stream->tell(), 4);
    EXPECT_EQ(stream->available(), "ef");
    EXPECT_TRUE(stream->truncate(5));
    EXPECT_EQ(stream->available(), "e");
    stream->close();
    EXPECT_FALSE(stream->isOpen());
    EXPECT_FALSE(stream->write("x", 1));
    EXPECT_EQ(folder.read("f"), "abXYe");
    EXPECT_EQ(Stream::open(folder.path("absent").c_str(), OpenMode::read), nullptr);
}

TEST(Stream, AFailedReadIsNotTheEndOfTheFile) {
    const TemporaryFolder folder;
    platform::FaultyFiles faulty(platform::theFiles());
    Stream stream(faulty.open(folder.write("f", pattern(2 * bufferSize)).c_str(), OpenMode::read));
    faulty.failAtCall(2);
    std::string read(2 * bufferSize, '\0');
    EXPECT_EQ(stream.read(read.data(), read.size()), bufferSize);
    EXPECT_TRUE(stream.failed());
}
