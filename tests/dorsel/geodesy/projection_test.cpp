#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include <dorsel/geodesy/projection.h>
#include <dorsel/geodesy/reference_ellipsoids.h>
#include <dorsel/trace.h>

#include "../../support/settings_folders.h"

namespace {

std::vector<std::string> warnings;

std::string zone(const char* name, double x, double y) {
    const double point[2] = {x, y};
    const CtesProj* found = CtesProj::GetProjection(name, point);
    return found != nullptr ? found->Name() : "";
}

}  // namespace

TEST(Projection, NamesAskingForAZoneGetThatOfThePoint) {
    struct {
        const char* name;
        double x, y;
        const char* zone;
    } const table[] = {
        {"*", 3, 45.5, "LZ93-CC46:"},
        {"LZ93-CC*", 3, 40.5, "LZ93-CC42:"},
        {"*", 3, 51.5, ""},
        {"*", 3, 40.4999, ""},
        {"*", 1652000, 1700000, "LZ93-CC43:"},
        {"*", 699999, 7200000, ""},
        {"*", 1652000, 9800000, ""},
        {"*", NAN, NAN, ""},
        {"*AUTO", 3, 48.15, "L-I  :"},
        {"_AUTO (Lambert)", 3, 48.1499, "L-II :"},
        {"L-*", 3, 45.4499, "L-III:"},
        {"L-*", 3, 42.3, "L-III:"},
        {"L-*", 3, 42.2999, "L-IV :"},
        {"L-*", 9, 43.02, "L-III:"},
        {"L-*", 7.99, 42.9, "L-III:"},
    };
    for (const auto& row : table)
        EXPECT_EQ(zone(row.name, row.x, row.y), row.zone) << row.name << ' ' << row.x << ' ' << row.y;
    EXPECT_EQ(CtesProj::GetProjection("*"), nullptr);
    EXPECT_EQ(CtesProj::GetProjection("L-*", nullptr), nullptr);
    EXPECT_TRUE(CtesProj::asksForZone("*") && CtesProj::asksForZone("_auto (Lambert)"));
    EXPECT_FALSE(CtesProj::asksForZone("L-93") || CtesProj::asksForZone(nullptr));
}

TEST(Projection, NamesAreFoundWhateverTheirBlanksAndCase) {
    CtesProj* found = CtesProj::GetProjection("L-I  :");
    ASSERT_NE(found, nullptr);
    for (const char* name : {"L-I", " l-i:", "l - I  :"})
        EXPECT_EQ(CtesProj::GetProjection(name), found) << name;
    EXPECT_STREQ(found->Name(), "L-I  :");
    EXPECT_EQ(found->GetEllipsoide(), CtesProj::GetProjection("L-IIE")->GetEllipsoide());
    EXPECT_NE(found->GetEllipsoide(), CtesProj::GetProjection("L-93")->GetEllipsoide());
    for (const char* name : {"", ":", "_Locale", "_Non Définie", "L-V"})
        EXPECT_EQ(CtesProj::GetProjection(name), nullptr) << name;
    EXPECT_EQ(CtesProj::GetProjection(nullptr), nullptr);
    EXPECT_EQ(CtesProj::GetProjection(std::string(100'000, 'L').c_str()), nullptr);
}

TEST(Projection, SettingsDefineProjectionsAndFaultsAreTraced) {
    const SettingsFolders folders;
    folders.local("projections",
                  "[PROJECTIONS]\n"
                  "Ville=TYPE=LAMBERT1;PHI0=52;K0=0,99987742;LAMBDA0=0;MERIDIEN=PARIS;UNITE=GRADE;X0=600000\n"
                  "Ville=Y0=2200000;DATUM=NTF\n"
                  "Sans "
                  "système=TYPE=LAMBERT2;PHI0=46,5;PHI1=49;PHI2=44;LAMBDA0=3;X0=700000;Y0=6600000;A=6378137;"
                  "F=298,257222101\n"
                  "Ancien=COMME=L-III;Y0=3200000;GRILLE=absente.txt\n"
                  "Fausse=TYPE=LAMBERT1;PHI0=95\n"
                  "L-IV=GRILLE=absente.txt\n");
    folders.network(
        "projections",
        "[PROJECTIONS]\nReseau=TYPE=GEOGRAPHIQUE;ELLIPSOIDE=GRS80;DX=1;DY=2;DZ=3;PRECISION=0,5\n");
    warnings.clear();
    TraceOutput before = setTraceOutput([](const char* line, bool) { warnings.emplace_back(line); });

    // As Lambert II étendu, in grads and on Paris.
    const CtesProj* town = CtesProj::GetProjection("VILLE");
    ASSERT_NE(town, nullptr);
    const double geo[2] = {2.5, 47};
    double a[2], b[2];
    ASSERT_TRUE(town->GeoToXy(geo, a) && CtesProj::GetProjection("L-IIE")->GeoToXy(geo, b));
    EXPECT_LT(std::hypot(a[0] - b[0], a[1] - b[1]), 1e-8);
    EXPECT_EQ(town->GetEllipsoide(), CtesProj::GetProjection("L-IIE")->GetEllipsoide());
    // As Lambert-93, parallels the other way round, without a way to other datums.
    const CtesProj* alone = CtesProj::GetProjection("Sans système");
    ASSERT_NE(alone, nullptr);
    ASSERT_TRUE(alone->GeoToXy(geo, a) && CtesProj::GetProjection("L-93")->GeoToXy(geo, b));
    EXPECT_LT(std::hypot(a[0] - b[0], a[1] - b[1]), 1e-7);
    EXPECT_EQ(alone->GetEllipsoide(), nullptr);
    EXPECT_TRUE(warnings.empty());
    // A grid that was asked for and is missing is said, and said again by its datum.
    const CtesProj* old = CtesProj::GetProjection("Ancien");
    ASSERT_NE(old, nullptr);
    EXPECT_EQ(old->Constants().y0, 3200000);
    EXPECT_EQ(old->GetEllipsoide()->gridState(), Ellipsoide::GridState::missing);
    ASSERT_EQ(warnings.size(), 1U);
    EXPECT_NE(warnings[0].find("absente.txt"), std::string::npos);
    EXPECT_EQ(CtesProj::GetProjection("Fausse"), nullptr);
    EXPECT_GT(warnings.size(), 3U);
    EXPECT_NE(CtesProj::GetProjection("reseau"), nullptr);
    setTraceOutput(before);
}

TEST(UserProjection, EachFaultHasItsMessage) {
    const std::string good = "TYPE=LAMBERT2;PHI0=46;PHI1=45;PHI2=47;LAMBDA0=3;X0=1;Y0=2;ELLIPSOIDE=GRS80";
    const std::string one = "TYPE=LAMBERT1;LAMBDA0=3;Y0=3";
    const std::string two = "TYPE=LAMBERT2;PHI0=46;PHI1=45;LAMBDA0=3;X0=1;Y0=2";
    const std::pair<std::string, std::string> table[] = {
        {"", "TYPE : absent"},
        {good + ";PHI0=46", "PHI0 : donné deux fois"},
        {good + ";K0=1", "K0 : ne va pas"},
        {two + ";PHI2=47", "ELLIPSOIDE : absent"},
        {two + ";PHI2=-45;ELLIPSOIDE=GRS80", "PHI1, PHI2 : pas de cône"},
        {one + ";PHI0=700000;X0=46;ELLIPSOIDE=GRS80", "PHI0 : doit être entre"},
        {one + ";PHI0=0;X0=46;ELLIPSOIDE=GRS80", "PHI0 : sur l'équateur"},
        {one + ";PHI0=46;X0=nan;ELLIPSOIDE=GRS80", "X0 : n'est pas un nombre"},
        {one + ";PHI0=46;X0=1;A=298,25;F=6378137", "A : doit être entre"},
        {one + ";PHI0=46;X0=1;PHI1=45;DATUM=NTF", "PHI1 : ne va pas"},
        {good + ";DATUM=NTF", "un seul des trois"},
        {good + ";DX=1;DY=2", "il faut les trois"},
        {good + ";COMME=L-99", "COMME : projection inconnue"},
        {"COMME=L-II;TYPE=LAMBERT2", "TYPE : n'est pas celui"},
    };
    std::vector<std::string> faults;
    EXPECT_TRUE(geodesy::readProjection("A", good, faults));
    for (const auto& [value, fault] : table) {
        EXPECT_FALSE(geodesy::readProjection("A", value, faults)) << value;
        std::string told;
        for (const std::string& each : faults) told += each + '\n';
        EXPECT_NE(told.find(fault), std::string::npos) << value << " -> " << told;
    }
    EXPECT_FALSE(geodesy::readProjection("L-93", good, faults));
    EXPECT_FALSE(geodesy::readProjection("L-93", "GRILLE=x", faults));
    EXPECT_TRUE(geodesy::readProjection("L-II", "GRILLE=x", faults));
    EXPECT_FALSE(geodesy::readProjection("A*", good, faults));
}
