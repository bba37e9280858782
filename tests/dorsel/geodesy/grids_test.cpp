#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include <dorsel/geodesy/alti_convert.h>
#include <dorsel/geodesy/datum_grid.h>
#include <platform/files.h>

#include "../../support/settings_folders.h"

using geodesy::DatumGrid;
using geodesy::HeightGrid;

namespace {

/// A surface that bilinear interpolation meets exactly.
double surface(double longitude, double latitude) {
    return 40 + 2 * longitude - 0.5 * (latitude - 40) + 0.25 * longitude * (latitude - 40);
}

/// The same 4 by 3 nodes in each of the forms that the header can announce.
std::string mnt(int order, bool coordinates, bool precision) {
    std::string text = "-1.5 1.5 42.0 43.0 1.0 0.5 " + std::to_string(order) + (coordinates ? " 1" : " 0") +
                       " 1 " + (precision ? "1" : "0") + " 0. Grille d'essai\r\n";
    const auto node = [&](int column, int row) {
        const double longitude = -1.5 + column, latitude = 42 + 0.5 * row;
        char line[100];
        std::snprintf(line, sizeof line, "%.4f ", surface(longitude, latitude));
        if (coordinates) text += std::to_string(longitude) + " " + std::to_string(latitude) + " ";
        text += line;
        if (precision) text += column == 3 ? "99 " : "01 ";
        if ((column + row) % 2 == 0) text += "\r\n";
    };
    if (order == 1 || order == 3) {
        for (int column = 0; column < 4; ++column)
            for (int row = 0; row < 3; ++row) node(column, order == 1 ? row : 2 - row);
    } else {
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 4; ++column) node(column, order == 4 ? row : 2 - row);
    }
    return text;
}

}  // namespace

TEST(HeightGrid, EveryFormGivesTheSameSurface) {
    std::vector<std::string> texts;
    for (int order = 1; order <= 4; ++order)
        for (int form = 0; form < 4; ++form) texts.push_back(mnt(order, (form & 1) != 0, (form & 2) != 0));
    texts.emplace_back("42 43 -1.5 1.5\n0.5 1\n" +
                       mnt(2, false, false).substr(mnt(2, false, false).find('\n')));
    for (const std::string& text : texts) {
        std::string fault;
        const auto grid = HeightGrid::parse(text, fault);
        ASSERT_TRUE(grid) << fault << '\n' << text;
        for (const auto& geo : {std::array{-1.5, 42.0}, {1.5, 43.0}, {0.2, 42.7}, {-0.75, 42.5}}) {
            double height = 0;
            ASSERT_TRUE(grid->heightAt(geo.data(), height));
            EXPECT_NEAR(height, surface(geo[0], geo[1]), 1e-5) << text;
        }
        double kept = -1;
        for (const auto& geo :
             {std::array{-1.51, 42.0}, {1.51, 42.0}, {0.0, 41.99}, {0.0, 43.01}, {NAN, 42.5}, {0.0, NAN}})
            EXPECT_FALSE(grid->heightAt(geo.data(), kept));
        EXPECT_EQ(kept, -1);
    }
    std::string fault;
    const auto grid = HeightGrid::parse(mnt(2, true, true), fault);
    EXPECT_EQ(grid->description(), "Grille d'essai");
    EXPECT_EQ(grid->precisionAt(std::array{-1.0, 42.2}.data()), 1);
    EXPECT_EQ(grid->precisionAt(std::array{1.0, 42.2}.data()), 99);
    EXPECT_EQ(grid->precisionAt(std::array{9.0, 42.2}.data()), -1);
}

TEST(HeightGrid, WhatIsNoWholeGridIsRefused) {
    const std::string whole = mnt(2, false, true), gra = "42 43 -1.5 1.5\n0.5 1\n";
    const std::string header = "-1.5 1.5 42 43 1 0.5 2 0 1 0 0. x\n", values = "1 2 3 4 5 6 7 8 9 10 11 12\n";
    std::string fault;
    ASSERT_TRUE(HeightGrid::parse(header + values, fault));
    const std::string texts[] = {
        "",
        whole.substr(0, whole.size() / 2),
        whole + " 1",
        header + "1 2 3 4 5 6 7 8 9 10 11",
        header + "1 2 3 4 5 6 7 8 9 10 11 nan",
        "-1.5 1.5 42 43 1 0.5 5 0 1 0 0. x\n" + values,
        "1.5 -1.5 42 43 1 0.5 2 0 1 0 0. x\n" + values,
        "-1.5 1.5 42 43 0.4 0.5 2 0 1 0 0. x\n" + values,
        "-180 180 -90 90 0.0001 0.0001 2 0 1 0 0. x\n" + values,  // 6,480,000,000,000 nodes
        "-180 180 -90 90 0.05 0.05 2 0 1 0 0. x\n" + values,      // a hundred megabytes
        gra + "1 2 3"};
    for (const std::string& text : texts) {
        fault.clear();
        EXPECT_FALSE(HeightGrid::parse(text, fault)) << text;
        EXPECT_FALSE(fault.empty()) << text;
    }
    // A cell with a corner that has no value has none.
    const auto grid = HeightGrid::parse(gra + "9999 2 3 4 5 6 7 8 9 10 11 -9999", fault);
    double height = 0;
    ASSERT_TRUE(grid);
    EXPECT_FALSE(grid->heightAt(std::array{-1.0, 42.9}.data(), height));
    EXPECT_TRUE(grid->heightAt(std::array{0.0, 42.9}.data(), height));
    EXPECT_FALSE(grid->heightAt(std::array{1.2, 42.2}.data(), height));
}

TEST(AltiConvert, GridsAreFoundOnceAndConvertBothWays) {
    const SettingsFolders folders;
    folders.folder().write("network\\ini\\essai.mnt", mnt(1, true, true));
    EXPECT_EQ(AltiConvert::FindAltiConvert("essai.mnt", 0), nullptr);
    AltiConvert* converter = AltiConvert::FindAltiConvert("ESSAI.MNT", 1);
    ASSERT_NE(converter, nullptr);
    EXPECT_EQ(AltiConvert::FindAltiConvert("essai.mnt", 0), converter);
    const double geo[2] = {0.5, 42.25};
    EXPECT_TRUE(std::isnan(converter->Convert(100, geo, 1)));
    ASSERT_EQ(converter->LoadGRID(), 1) << converter->fault();
    const geodesy::HeightGrid* loaded = converter->grid();
    EXPECT_NEAR(converter->Convert(100, geo, 1), 100 + surface(0.5, 42.25), 1e-5);
    EXPECT_NEAR(converter->Convert(100, geo, 0), 100 - surface(0.5, 42.25), 1e-5);
    for (const double none : {converter->Convert(100, std::array{9.0, 42.0}.data(), 1),
                              converter->Convert(NAN, geo, 0), converter->Convert(1, nullptr, 0)})
        EXPECT_TRUE(std::isnan(none));
    platform::theFiles().remove(folders.folder().path("network\\ini\\essai.mnt").c_str());
    EXPECT_EQ(converter->LoadGRID(), 1);
    EXPECT_EQ(converter->grid(), loaded);

    AltiConvert* missing = AltiConvert::FindAltiConvert("absent.mnt", 1);
    ASSERT_NE(missing, nullptr);
    EXPECT_EQ(missing->LoadGRID(), 0);
    EXPECT_EQ(missing->fault(), "fichier introuvable");
    folders.folder().write("local\\absent.mnt", mnt(3, false, false));
    EXPECT_EQ(missing->LoadGRID(), 1);
    for (const char* none : {"", static_cast<const char*>(nullptr)})
        EXPECT_EQ(AltiConvert::FindAltiConvert(none, 1), nullptr);
}

TEST(DatumGrid, WhatIsNoWholeGridIsRefused) {
    const std::string header = "GR3D1 2.4 2.5 48.8 48.9 .1 .1\n";
    const std::string a = "00002 2.4 48.8 -168 -58 320 01 2314\n", b = "00002 2.5 48.8 -168 -58 320 01\n",
                      c = "00002 2.4 48.9 -168 -58 320 99\n", d = "00002 2.5 48.9 -168 -58 320 01\n";
    std::string fault;
    const auto grid = DatumGrid::parse("\n# essai\n" + header + d + c + b + a, fault);
    ASSERT_NE(grid, nullptr) << fault;
    EXPECT_EQ(grid->accuracyAt(std::array{2.45, 48.85}.data()), 1);
    for (const std::string& text :
         {std::string(), header, header + a + b + c, a + b + c + d, header + a + b + c + c,
          header + a + b + c + d + d, header + header + a + b + c + d, "GR3D1 2.4 2.5 48.8\n" + a + b + c + d,
          header + a + b + c + "00002 2.5 48.9 nan -58 320 01\n",
          header + a + b + c + "00002 2.5 48.9 -168 -58\n",
          header + a + b + c + "00002 2.55 48.9 -168 -58 320 01\n",
          header + a + b + c + "00002 1e300 48.9 -168 -58 320 01\n",
          header + a + b + c + "00002 2.5 48.9 -1e9 -58 320 01\n", "GR3D1 -180 180 -90 90 .0001 .0001\n" + a,
          "GR3D1 -180 180 -90 90 .05 .05\n" + a}) {
        fault.clear();
        EXPECT_EQ(DatumGrid::parse(text, fault), nullptr) << text;
        EXPECT_FALSE(fault.empty()) << text;
    }
}
