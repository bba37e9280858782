#include <kestra/controls/data/row_cache.h>

#include <gtest/gtest.h>

namespace {

TEST(RowCache, ReadsARowOnceWhileItIsInReachAndAgainWhenForgotten) {
    int failing = -1;
    controls::RowCache cache(
        [&](int row, controls::RowCache::Texts& texts) {
            texts = {std::to_string(row)};
            return row != failing;
        },
        4);
    struct Case {
        int row;
        std::int64_t read;
    };
    for (const Case& each : {Case{0, 1}, {3, 2}, {0, 2}, {4, 3}, {0, 4}, {3, 4}, {1000000, 5}}) {
        ASSERT_NE(cache.row(each.row), nullptr);
        EXPECT_EQ(*cache.row(each.row), controls::RowCache::Texts{std::to_string(each.row)});
        EXPECT_EQ(cache.rowsRead(), each.read) << each.row;
    }
    cache.forget(3);
    cache.forget(2);
    cache.row(3);
    EXPECT_EQ(cache.rowsRead(), 6);
    cache.forgetAll();
    failing = 3;
    EXPECT_EQ(cache.row(3), nullptr);
    EXPECT_EQ(cache.row(-1), nullptr);
    failing = -1;
    EXPECT_NE(cache.row(3), nullptr) << "a row that could not be read is asked for again";
}

}  // namespace
