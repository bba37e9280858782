#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include <kestra/project/chantier.h>
#include <kestra/project/conversions/coordinate_operation.h>

#include "../../support/settings_folders.h"

namespace {

CtesProj* projection(const char* name) {
    CtesProj* found = CtesProj::GetProjection(name);
    EXPECT_NE(found, nullptr) << name;
    return found;
}

// One place in two systems and on the globe, computed with PROJ 9.1.1.
const double inLambert93[3] = {652381.123, 6862047.5, 35.2};
const double inCc49[3] = {1652379.971044, 8184269.139005, 35.2};
const double onGlobe[3] = {2.351000697057, 48.856703587263, 35.2};

void expectPoint(const double* point, const double* expected, double within) {
    for (int i = 0; i < 2; ++i) EXPECT_NEAR(point[i], expected[i], within);
}

/// A project in one projection, and a point of it.
class Conversions : public testing::Test {
  protected:
    Conversions() { m_project.m_projection = "L-93 :"; }
    void put(const double* point) { std::memcpy(m_point, point, sizeof m_point); }
    Cchantier m_project;
    double m_point[3] = {inLambert93[0], inLambert93[1], inLambert93[2]}, m_scale = -1;
    std::int32_t m_whole[2] = {652381, 6862047};
};

TEST_F(Conversions, PointsOfAProjectAreConvertedInPlace) {
    put(onGlobe);
    ASSERT_EQ(m_project.GeoToXYZ(m_point, nullptr, &m_scale), 1);
    expectPoint(m_point, inLambert93, 1e-5);
    EXPECT_EQ(m_scale, projection("L-93")->ProjScale(nullptr, onGlobe));
    ASSERT_EQ(m_project.XYZToGeo(m_point, nullptr, &m_scale), 1);
    expectPoint(m_point, onGlobe, 1e-10);
    EXPECT_EQ(m_point[2], 35.2);

    put(inLambert93);
    ASSERT_EQ(m_project.Lambert(m_point, nullptr, projection("LZ93-CC49"), &m_scale), 1);
    expectPoint(m_point, inCc49, 1e-5);
    ASSERT_EQ(m_project.Lambert(m_whole, nullptr, projection("LZ93-CC49"), nullptr), 1);
    EXPECT_EQ(m_whole[0], 1652379);
    EXPECT_EQ(m_whole[1], 8184268);

    // A project that asks for the zone of a point gives it where the point is handed on.
    m_project.m_projection = "*";
    put(inCc49);
    EXPECT_EQ(m_project.XYZToGeo(m_point, nullptr, nullptr), 1);
    expectPoint(m_point, onGlobe, 1e-10);
}

TEST_F(Conversions, WhatCannotBeConvertedGives0AndStays) {
    EXPECT_EQ(m_project.GeoToXYZ(m_point, nullptr, &m_scale), 0) << "no degrees";
    m_point[2] = NAN;
    EXPECT_EQ(m_project.Lambert(m_point, nullptr, projection("L-II"), &m_scale), 0);
    EXPECT_EQ(m_point[0], 652381.123);
    EXPECT_EQ(m_scale, -1);
}

TEST_F(Conversions, KeptWithBothMissingOnlyTheSourceIsFilledInAndTheCallFails) {
    EXPECT_EQ(m_project.Lambert(m_point, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(m_project.Lambert(m_whole, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(m_point[0], 652381.123);
}

TEST_F(Conversions, KeptTheZoneOfAProjectIsNotLookedForWithWholeNumbers) {
    m_project.m_projection = "*";
    std::int32_t whole[2] = {1652379, 8184269};
    EXPECT_EQ(m_project.Lambert(whole, nullptr, projection("L-93"), nullptr), 0);
    EXPECT_EQ(whole[0], 1652379);
}

TEST(CoordinateOperation, HeightsGoThroughBothGridsAndTheConstant) {
    const SettingsFolders folders;
    const std::string corners = "0 4 47 50 4 3 4 0 1 0 0. plane\n";
    folders.folder().write("local\\ini\\forty.mnt", corners + "40 40 40 40");
    folders.folder().write("local\\ini\\fifty.mnt", corners + "50 50 50 50");
    folders.folder().write("local\\ini\\corsica.mnt", "8 10 41 43 2 2 4 0 1 0 0. x\n1 1 1 1");
    AltiConvert* forty = kestra::gridOfChoice(" Altitudes = forty.mnt ");
    AltiConvert* fifty = kestra::gridOfChoice("fifty.mnt");

    kestra::CoordinateOperation operation;
    operation.from = projection("L-93");
    operation.to = projection("LZ93-CC49");
    struct {
        const AltiConvert *from, *to;
        double dz, height;
    } const table[] = {{forty, nullptr, 0, 75.2}, {nullptr, fifty, 0, -14.8}, {forty, fifty, 2, 27.2}};
    double out[3], geo[3];
    for (const auto& row : table) {
        operation.altiFrom = row.from;
        operation.altiTo = row.to;
        operation.dz = row.dz;
        ASSERT_TRUE(operation.transform(inLambert93, out, geo));
        EXPECT_NEAR(out[2], row.height, 1e-12);
        EXPECT_NEAR(geo[2], row.height - row.dz, 1e-12);
        expectPoint(out, inCc49, 1e-5);
        ASSERT_TRUE(operation.reversed().transform(out, out, geo));
        EXPECT_NEAR(out[2], 35.2, 1e-12);
    }
    // Outside a grid, and with one that is not there, the point fails.
    out[2] = -1;
    for (const char* grid : {"corsica.mnt", "no such grid.mnt"}) {
        operation.altiFrom = kestra::gridOfChoice(grid);
        EXPECT_FALSE(operation.transform(inLambert93, out, geo)) << grid;
        EXPECT_EQ(out[2], -1);
    }
    EXPECT_TRUE(operation.missesGrid());
}

TEST(CoordinateOperation, TheReportNamesOperationGridAndAccuracy) {
    const SettingsFolders folders;
    folders.local("projections",
                  "[PROJECTIONS]\nII par grille=COMME=L-IIE;GRILLE=essai_gr3d.txt\nII sans "
                  "grille=COMME=L-IIE;GRILLE=rien.txt\n");
    folders.folder().write("local\\ini\\essai_gr3d.txt",
                           "GR3D1 2 3 48 49 1 1\n2 2 48 -168 -60 320 1\n2 3 48 -168 -60 320 1\n"
                           "2 2 49 -168 -60 320 2\n2 3 49 -168 -60 320 1\n");
    const auto reportOf = [](const char* name, bool missing) {
        kestra::CoordinateOperation operation;
        operation.from = projection(name);
        operation.to = projection("L-93");
        std::string all;
        for (const std::string& line : operation.report()) all += line + '\n';
        EXPECT_EQ(operation.missesGrid(), missing) << all;
        return all;
    };
    const auto expectAll = [](const std::string& report, std::initializer_list<const char*> parts) {
        for (const char* part : parts)
            EXPECT_NE(report.find(part), std::string::npos) << part << " in\n" << report;
    };
    expectAll(reportOf("L-IIE", false), {"DX -168 DY -60 DZ +320 m", "Grilles : aucune", "Précision : 2 m"});
    expectAll(reportOf("II par grille", false),
              {"grille nationale essai_gr3d.txt", "Grilles : essai_gr3d.txt", "celle de la grille"});
    expectAll(reportOf("II sans grille", true),
              {"rien.txt INTROUVABLE", "Grilles : aucune", "Précision : 2 m"});
    expectAll(reportOf("LZ93-CC42", false), {"Grilles : aucune", "0,1 mm"});
}

TEST(CoordinateOperation, ChoicesComeFromTheSettings) {
    const SettingsFolders folders;
    const std::vector<std::string> builtIn = {"Altitudes NGF(RAF2009) =RAF09.MNT",
                                              "Altitudes ED50(EGM08)  =EGM08fr.MNT",
                                              "Altitudes ED50(EGM96) =egm96fr.MNT"};
    EXPECT_EQ(kestra::altitudeChoices(), builtIn);
    folders.network("projections", "[ALTITUDES]\nNGF IGN69=RAF20.mnt\nVide=\nCorse=RAC09.mnt\n");
    EXPECT_EQ(kestra::altitudeChoices(),
              (std::vector<std::string>{"NGF IGN69=RAF20.mnt", "Corse=RAC09.mnt"}));

    ASSERT_NE(CtesProj::GetProjection("L-93"), nullptr);  // the first one loaded, when this test runs alone
    const auto choices = kestra::projectionChoices("L-93");
    EXPECT_EQ(choices[0], "_Non Définie");
    EXPECT_EQ(choices[1], "_Locale");
    EXPECT_EQ(choices[2], "L-I  :");
    EXPECT_EQ(kestra::projectionChoices("*AUTO")[0], "_AUTO (Lambert)");
    EXPECT_EQ(kestra::projectionChoices("*a")[0], "_Non Définie");
}

}  // namespace
