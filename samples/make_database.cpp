// Makes the database of the sample affair: survey points, stations and parcels of a housing estate.
//
//     kestra_sample_database FILE
//
// The same file comes out each time: what varies follows a fixed sequence.
#include <array>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include <dorsel/paths.h>
#include <kestra/database/my_recordset_ptr.h>
#include <platform/console.h>

namespace {

constexpr int pointCount = 5000, stationCount = 48, parcelCount = 120, pointsPerStation = 105;
/// Middle of the estate in Lambert 93 CC45, metres.
constexpr double middleX = 1527400, middleY = 4194500, middleZ = 148.5;

constexpr std::array operators = {"Hélène Châtelier", "Benoît Lefèvre", "Aïcha Benkhelifa", "Loïc Guérin"};
constexpr std::array instruments = {"Tachéomètre TS-12 n° 4471", "Tachéomètre TS-12 n° 4502",
                                    "Mobile GNSS R3"};
constexpr std::array owners = {"Indivision Lacombe-Peyronnet", "Commune de Saint-Alvère",
                               "M. et Mme Étienne Delbos",     "SCI de l'Étang",
                               "Mme Noëlle Castaing",          "M. François Vergniaud",
                               "GAEC du Châtaignier",          "M. Gaël d'Hérouville"};
constexpr std::array lanes = {"rue de la République", "chemin de l'Étang", "impasse des Châtaigniers",
                              "allée du Pré Brûlé", "route de Périgueux"};

struct Nature {
    const char *code, *name;
    bool hasHeight;
};
constexpr std::array<Nature, 10> natures = {{{"BOR", "Borne OGE", true},
                                             {"CLO", "Clôture grillagée", false},
                                             {"MUR", "Mur de soutènement", true},
                                             {"REG", "Regard d'assainissement", true},
                                             {"TN", "Terrain naturel", true},
                                             {"ARB", "Chêne isolé", false},
                                             {"FOS", "Fossé, fil d'eau", true},
                                             {"BAT", "Angle de bâtiment", true},
                                             {"EDF", "Coffret électrique", false},
                                             {"VOI", "Bord de chaussée", true}}};

/// Numbers that are the same on every system.
class Sequence {
  public:
    /// From 0 up to, and without, `end`.
    int below(int end) { return static_cast<int>(m_random() % static_cast<unsigned>(end)); }
    /// Metres around 0, to the millimetre.
    double metres(int reach) { return (below(2 * reach * 1000) - reach * 1000) / 1000.0; }
    bool oneIn(int count) { return below(count) == 0; }
    const char* of(const auto& texts) { return texts[static_cast<std::size_t>(below(int(texts.size())))]; }

  private:
    std::mt19937 m_random{20240312};
};

double rounded(double metres) {
    return std::round(metres * 1000) / 1000;
}

/// A working day of the survey, from Monday, 11 March 2024 on, between 8 and 17 o'clock.
COleDateTime workingTime(Sequence& sequence, int day) {
    constexpr int hour = 3600;
    const double time = (8 * hour + sequence.below(9 * hour)) / (24.0 * hour);
    return {platform::serialDate(2024, 3, 11) + day + (day / 5) * 2 + time};
}

/// What is made, until something fails.
class SampleDatabase {
  public:
    explicit SampleDatabase(const _ConnectionPtr& connection) : m_connection(connection) {}

    bool make() {
        makeTables();
        m_connection->BeginTrans();
        const bool isFilled = fill("STATIONS", stationCount, &SampleDatabase::station) &&
                              fill("POINTS", pointCount, &SampleDatabase::point) &&
                              fill("PARCELLES", parcelCount, &SampleDatabase::parcel);
        if (isFilled) m_connection->CommitTrans();
        return isFilled;
    }

  private:
    void makeTables() {
        for (const char* statement :
             {"CREATE TABLE STATIONS (NUM INTEGER NOT NULL PRIMARY KEY, NOM VARCHAR(20) NOT NULL, X DOUBLE, "
              "Y DOUBLE, Z DOUBLE, HAUTEUR DOUBLE, APPAREIL VARCHAR(40), OPERATEUR VARCHAR(40), "
              "DATE_STATION DATETIME, REMARQUES MEMO)",
              "CREATE TABLE POINTS (NUM INTEGER NOT NULL PRIMARY KEY, MATRICULE VARCHAR(12), X DOUBLE, "
              "Y DOUBLE, Z DOUBLE, CODE VARCHAR(4), NATURE VARCHAR(40), STATION INTEGER, "
              "DATE_LEVE DATETIME, CONTROLE BIT, OBSERVATIONS MEMO)",
              "CREATE TABLE PARCELLES (REFERENCE VARCHAR(10) NOT NULL PRIMARY KEY, PROPRIETAIRE VARCHAR(60), "
              "ADRESSE VARCHAR(60), CONTENANCE INTEGER, PRIX CURRENCY, BORNAGE DATETIME, REMARQUES MEMO)",
              "CREATE VIEW POINTS_SANS_ALTITUDE AS SELECT NUM, MATRICULE, NATURE, DATE_LEVE FROM POINTS "
              "WHERE Z IS NULL"})
            m_connection->Execute(statement);
    }

    bool fill(const char* table, int count, void (SampleDatabase::*setFields)(MyRecordsetPtr&, int)) {
        MyRecordsetPtr records;
        bool isGood = records.Open(table, m_connection, ado20::adCmdTable, ado20::adOpenKeyset,
                                   ado20::adLockOptimistic) >= 0;
        for (int number = 1; number <= count && isGood; ++number) {
            records.AddNew();
            (this->*setFields)(records, number);
            isGood = records.Update(1) >= 0;
        }
        return isGood;
    }

    void station(MyRecordsetPtr& records, int number) {
        const bool isGnss = number % 8 == 0;
        records.SetValue("NUM", number);
        records.SetValue("NOM", ("ST." + std::to_string(100 + number)).c_str());
        records.SetValue("X", rounded(middleX + m_sequence.metres(180)));
        records.SetValue("Y", rounded(middleY + m_sequence.metres(140)));
        records.SetValue("Z", rounded(middleZ + m_sequence.metres(6)));
        if (!isGnss) records.SetValue("HAUTEUR", (1500 + m_sequence.below(250)) / 1000.0);
        records.SetValue("APPAREIL", instruments[isGnss ? 2 : std::size_t(m_sequence.below(2))]);
        records.SetValue("OPERATEUR", m_sequence.of(operators));
        records.SetValue("DATE_STATION", workingTime(m_sequence, number / 2));
        if (m_sequence.oneIn(6))
            records.SetValue("REMARQUES",
                             "Station rattachée aux repères NGF de l'église et du lavoir.\r\n"
                             "Fermeture : 8 mm en planimétrie, 4 mm en altimétrie.");
    }

    void point(MyRecordsetPtr& records, int number) {
        const Nature& nature = natures[static_cast<std::size_t>(m_sequence.below(int(natures.size())))];
        const double x = m_sequence.metres(220), y = m_sequence.metres(170);
        records.SetValue("NUM", number);
        records.SetValue("MATRICULE", (std::string(nature.code) + '.' + std::to_string(number)).c_str());
        records.SetValue("X", rounded(middleX + x));
        records.SetValue("Y", rounded(middleY + y));
        // The ground falls towards the pond in the south-west.
        if (nature.hasHeight)
            records.SetValue("Z", rounded(middleZ + x * 0.021 + y * 0.034 + m_sequence.metres(1) * 0.2));
        records.SetValue("CODE", nature.code);
        records.SetValue("NATURE", nature.name);
        const int station = (number - 1) / pointsPerStation + 1;
        records.SetValue("STATION", station);
        records.SetValue("DATE_LEVE", workingTime(m_sequence, station / 2));
        records.SetValue("CONTROLE", m_sequence.oneIn(10) ? -1 : 0);
        if (m_sequence.oneIn(40))
            records.SetValue("OBSERVATIONS",
                             "Point levé deux fois, écart moyen retenu.\r\n"
                             "À revoir avec le riverain « côté étang » avant le bornage.");
    }

    void parcel(MyRecordsetPtr& records, int number) {
        records.SetValue("REFERENCE", ("AB " + std::to_string(100 + number)).c_str());
        records.SetValue("PROPRIETAIRE", m_sequence.of(owners));
        const std::string house = std::to_string(1 + m_sequence.below(60));
        records.SetValue("ADRESSE", (house + ", " + m_sequence.of(lanes)).c_str());
        const int area = 380 + m_sequence.below(1400);
        records.SetValue("CONTENANCE", area);
        if (!m_sequence.oneIn(4)) records.SetValue("PRIX", area * 42.5);
        if (!m_sequence.oneIn(3))
            records.SetValue("BORNAGE", COleDateTime(2024, 3, 1 + number % 28, 0, 0, 0));
        if (m_sequence.oneIn(12))
            records.SetValue("REMARQUES",
                             "Servitude de passage au profit de la parcelle voisine; accord oral "
                             "du propriétaire, à régulariser chez Maître Dufaÿ.");
    }

    _ConnectionPtr m_connection;
    Sequence m_sequence;
};

int fail(const char* file) {
    platform::writeConsole(platform::Channel::error,
                           "kestra_sample_database : « " + std::string(file) +
                               " » : " + Database::m_LastError.m_Description.GetString() + '\n');
    return 1;
}

}  // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> texts = platform::programArguments(count, arguments);
    if (texts.size() != 1) {
        platform::writeConsole(platform::Channel::error, "Usage : kestra_sample_database FICHIER\n");
        return 2;
    }
    const char* file = texts[0].c_str();
    DOS::CreateDir(DOS::GetPName(file, "UR"), 4);
    Database database;
    if (*database.CreateDatabase(file) == '\0') return fail(file);
    const _ConnectionPtr connection = database.OpenDB(file, 0, ado20::adUseClient);
    if (!connection) return fail(file);
    try {
        if (SampleDatabase(connection).make()) return 0;
    } catch (const _com_error& error) {
        Database::Erreur(error, "base exemple");
    }
    return fail(file);
}
