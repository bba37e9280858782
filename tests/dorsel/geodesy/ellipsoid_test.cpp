#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

#include <dorsel/geodesy/datum_grid.h>
#include <dorsel/geodesy/ellipsoid.h>
#include <dorsel/geodesy/lambert_conic.h>
#include <dorsel/geodesy/reference_ellipsoids.h>

namespace {

void expectAt(const double point[2], const double expected[2], double within) {
    EXPECT_NEAR(point[0], expected[0], within);
    EXPECT_NEAR(point[1], expected[1], within);
}

const Ellipsoide rgf93(geodesy::grs80.radius, geodesy::grs80.eccentricity, 0, 0, 0);
const Ellipsoide ntf(geodesy::clarke1880Ign.radius, geodesy::clarke1880Ign.eccentricity, -168, -60, 320);

double sexagesimal(double degrees, double minutes, double seconds) {
    return degrees + minutes / 60 + seconds / 3600;
}

// The nodes around the sample point of NT/G 88, as the grid that the note describes has them.
const char* const gridText =
    "GR3D  002024 024 20370201\n"
    "GR3D1    2.4000   2.5000  48.8000  48.9000    .1000    .1000\n"
    "GR3D2 INTERPOLATION BILINEAIRE\n"
    "GR3D3 PREC CM 01:5 02:10 03:20 04:50 99>100\n"
    "00002    2.400000000   48.800000000  -168.252   -58.630   320.170  01   2314\n"
    "00002    2.400000000   48.900000000  -168.275   -58.606   320.189  01   2314\n"
    "00002    2.500000000   48.800000000  -168.204   -58.594   320.125  02   2314\n"
    "00002    2.500000000   48.900000000  -168.253   -58.554   320.165  01   2314\n";

}  // namespace

TEST(Ellipsoid, GeocentricCoordinatesAreThePublishedOnes) {
    // IGN, NT/G 80, ALG0009 and ALG0012, as printed (mm).
    struct {
        double lambda, phi, height, xyz[3];
    } const table[] = {{0.01745329248, 0.02036217457, 100, {6376064.695, 111294.623, 128984.725}},
                       {0.00290888212, 0, 10, {6378232.215, 18553.578, 0}},
                       {0.00581776423, -0.03199770300, 2000, {6376897.537, 37099.705, -202730.907}}};
    for (const auto& row : table) {
        const double geo[3] = {row.lambda / geodesy::degree, row.phi / geodesy::degree, row.height};
        double xyz[3], back[3];
        ASSERT_TRUE(ntf.toGeocentric(geo, xyz));
        ASSERT_TRUE(ntf.toGeographic(xyz, back));
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(xyz[i], row.xyz[i], 0.0006);
            EXPECT_NEAR(back[i], geo[i], i == 2 ? 1e-8 : 1e-13);
        }
    }
}

TEST(Ellipsoid, DatumShiftsAreThoseOfTheNationalNote) {
    // IGN, NT/G 88: one point in NTF, in RGF93 by three parameters, in RGF93 by the grid.
    const double before[3] = {sexagesimal(2, 25, 32.4187), sexagesimal(48, 50, 40.2441), 0};
    const double byThree[2] = {sexagesimal(2, 25, 29.8273), sexagesimal(48, 50, 39.9967)};
    const double byGrid[2] = {sexagesimal(2, 25, 29.89599), sexagesimal(48, 50, 40.00502)};
    constexpr double lastDigit = 0.00006 / 3600;
    double point[3] = {before[0], before[1], before[2]};
    ASSERT_EQ(ntf.DatumShift(point, &rgf93), 1);
    expectAt(point, byThree, lastDigit);
    ASSERT_EQ(rgf93.DatumShift(point, &ntf), 1);
    expectAt(point, before, 3e-8);

    std::string fault;
    Ellipsoide withGrid = ntf;
    withGrid.useGrid("gr3df97a.txt", geodesy::DatumGrid::parse(gridText, fault));
    ASSERT_EQ(withGrid.gridState(), Ellipsoide::GridState::loaded) << fault;
    double gridded[3] = {before[0], before[1], before[2]};
    ASSERT_EQ(withGrid.DatumShift(gridded, &rgf93), 1);
    expectAt(gridded, byGrid, lastDigit);
    double shift[3];
    ASSERT_TRUE(withGrid.grid()->parametersAt(gridded, shift));
    expectAt(shift, std::array{-168.253, -58.609}.data(), 0.0005);
    EXPECT_NEAR(shift[2], 320.170, 0.0005);
    EXPECT_EQ(withGrid.grid()->accuracyAt(gridded), 0.10);
    ASSERT_EQ(rgf93.DatumShift(gridded, &withGrid), 1);
    expectAt(gridded, before, 3e-8);

    // To a third datum the way leads through RGF93; outside the grid there is no way.
    const Ellipsoide other(geodesy::clarke1880Ign.radius, geodesy::clarke1880Ign.eccentricity, -160, -50,
                           300);
    double direct[3] = {byGrid[0], byGrid[1], 0}, through[3] = {before[0], before[1], 0};
    ASSERT_TRUE(rgf93.DatumShift(direct, &other) == 1 && withGrid.DatumShift(through, &other) == 1);
    expectAt(through, direct, lastDigit);
    double outside[3] = {2.6, 48.85, 0};
    EXPECT_EQ(withGrid.DatumShift(outside, &rgf93), 0);
    EXPECT_EQ(rgf93.DatumShift(outside, &withGrid), 0);
    EXPECT_EQ(outside[0], 2.6);
}

TEST(Ellipsoid, ShiftsAgreeWithTheLongWayAtEveryHeight) {
    for (const double height : {-1000.0, 0.0, 4800.0, 20000.0, 9e6})
        for (double latitude = -89; latitude < 90; latitude += 17)
            for (double longitude = -175; longitude < 180; longitude += 31) {
                double point[3] = {longitude, latitude, height}, xyz[3], expected[3];
                ASSERT_TRUE(ntf.toGeocentric(point, xyz));
                for (int i = 0; i < 3; ++i) xyz[i] += ntf.shift(i);
                ASSERT_TRUE(rgf93.toGeographic(xyz, expected));
                ASSERT_EQ(ntf.DatumShift(point, &rgf93), 1);
                expectAt(point, expected, 2e-13);
                EXPECT_EQ(point[2], height);
            }
}

TEST(Ellipsoid, WhatHasNoShiftFailsAndLeavesThePoint) {
    const double infinite = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double bad[][3] = {
        {3, 90, 0},  {3, -90, 0},  {180, 45, 0},      {-180, 45, 0},    {179.99999999, 45, 0}, {nan, 45, 0},
        {3, nan, 0}, {3, 45, nan}, {3, 45, infinite}, {3, infinite, 0}, {3, 45, -6.4e6},       {3, 45, 1e9}};
    for (const auto& point : bad) {
        double kept[3] = {point[0], point[1], point[2]};
        EXPECT_EQ(ntf.DatumShift(kept, &rgf93), 0) << point[0] << ' ' << point[1] << ' ' << point[2];
        EXPECT_EQ(std::memcmp(kept, point, sizeof kept), 0);
    }
    double same[3] = {3, 45, 10};
    EXPECT_EQ(ntf.DatumShift(nullptr, &rgf93) + ntf.DatumShift(same, nullptr), 0);
    const Ellipsoide twin = ntf;
    EXPECT_EQ(ntf.DatumShift(same, &twin), 1);
    EXPECT_EQ(same[0], 3);
    double centre[3] = {0, 0, 0};
    EXPECT_FALSE(ntf.toGeographic(centre, same));
    EXPECT_EQ(same[1], 45);
}
