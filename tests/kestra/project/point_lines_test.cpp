#include <gtest/gtest.h>

#include <kestra/project/conversions/point_lines.h>

using kestra::PointLines;

namespace {

std::string convert(PointLines& lines, const std::string& text) {
    std::string out;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.convert(std::string_view(text).substr(start, end - start), out);
        start = end + 1;
    }
    return out;
}

std::string convert(const char* from, const char* to, const std::string& text,
                    const PointLines::Options& options = {}, double dz = 0) {
    kestra::CoordinateOperation heights;
    heights.dz = dz;
    PointLines lines(from, to, heights, options);
    EXPECT_TRUE(lines.isSound()) << lines.fault();
    return convert(lines, text);
}

}  // namespace

TEST(PointLines, EverythingButTheCoordinatesStays) {
    struct {
        const char *from, *to, *text, *expected;
    } const table[] = {
        {"L-93", "LZ93-CC49", "nom;X;Y;Z;code\nA 1;652381,123; 6862047.500 ;35.2;mur\n",
         "nom;X;Y;Z;code\nA 1;1652379,9710; 8184269.1390 ;35.2;mur\n"},
        {"L-93", "LZ93-CC49", "# note\n\n652381.123\t6862047.5\tx\r\n",
         "# note\n\n1652379.9710\t8184269.1390\tx\r\n"},
        {"L-93", "GEO-RGF93", "\"a;b\";N;E\n\"c;d\";\"6862047.5\";652381.123",
         "\"a;b\";N;E\n\"c;d\";\"48.856703587\";2.351000697\n"},
        {"GEO-RGF93", "*", "lat;lon\n48.856703587263;2.351000697057\n",
         "lat;lon\n8184269.1390;1652379.9710\n"},
        {"*", "L-93", "1652379.971044;8184269.139005;\n", "652381.1230;6862047.5000;\n"},
    };
    for (const auto& row : table) EXPECT_EQ(convert(row.from, row.to, row.text), row.expected);

    PointLines::Options options;
    options.columns = {3, 2, 4};
    options.decimals = 2;
    EXPECT_EQ(convert("L-93", "LZ93-CC49", "1;6862047.5;652381.123;35,2;z\n", options, 1.5),
              "1;8184269.14;1652379.97;36,70;z\n");
}

TEST(PointLines, BadLinesAreMarkedAndTheRestGoesOn) {
    PointLines::Options options;
    options.roundTrip = true;
    PointLines lines("L-IIE", "L-93", {}, options);
    const std::string megabyte(1 << 20, 'x');
    EXPECT_EQ(convert(lines, "600000;2200000;0\n600000\n600000;abc;0\n1e400;1;1\nnan;inf;0\n600000;1e12;0\n" +
                                 megabyte + "\n600000;2200000;0\n"),
              "649399.4197;6633524.5740;0\n"
              "# ligne 2 : colonne absente : 600000\n"
              "# ligne 3 : nombre illisible : 600000;abc;0\n"
              "# ligne 4 : nombre illisible : 1e400;1;1\n"
              "# ligne 5 : nombre illisible : nan;inf;0\n"
              "# ligne 6 : point hors du domaine de la projection ou de la grille : 600000;1e12;0\n"
              "# ligne 7 : colonne absente : " +
                  megabyte + "\n649399.4197;6633524.5740;0\n");
    EXPECT_EQ(lines.points(), 2);
    EXPECT_EQ(lines.badLines(), 6);
    EXPECT_LT(lines.roundTripPlane(), 0.003);
}
