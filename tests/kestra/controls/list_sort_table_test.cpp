#include <kestra/controls/list_sort_table.h>

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

/// What a scan of the rows answers.
int scanned(const std::vector<ListSortTable::Row>& rows, std::uint64_t data1, std::uint64_t data2) {
    std::size_t row1 = 0, row2 = 0;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (rows[row].data == data1) row1 = row;
        if (rows[row].data == data2) row2 = row;
    }
    return rows[row1].text.compare(rows[row2].text);
}

int sign(int value) {
    return (value > 0) - (value < 0);
}

TEST(ListSortTable, AnswersAsAScanOfTheRows) {
    std::mt19937_64 random(3);
    const std::string texts[] = {"",
                                 "a",
                                 "ab",
                                 "abcdefgh",
                                 "abcdefghi",
                                 "abcdefghj",
                                 "é",
                                 std::string("a\0b", 3),
                                 std::string("a\0", 2),
                                 "9",
                                 "10",
                                 std::string(5000, 'x')};
    for (const std::size_t count : {1u, 2u, 7u, 64u, 300u}) {
        std::vector<ListSortTable::Row> rows;
        for (std::size_t row = 0; row < count; ++row) {
            // Small numbers, addresses a page apart, and some of both twice.
            const std::uint64_t data =
                row % 3 == 0 ? random() % 50 : 0x7FFF00000000u + 4096 * (random() % 100);
            rows.push_back({data, texts[random() % std::size(texts)]});
        }
        const ListSortTable table(rows);
        for (int i = 0; i < 2000; ++i) {
            const std::uint64_t first = i % 5 == 0 ? random() : rows[random() % count].data;
            const std::uint64_t second = rows[random() % count].data;
            ASSERT_EQ(sign(table.compare(first, second)), sign(scanned(rows, first, second)));
        }
    }
}

TEST(ListSortTable, WithoutRowsAllIsEqual) {
    const ListSortTable table({});
    EXPECT_EQ(table.compare(1, 2), 0);
}

}  // namespace
