#pragma once
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <kestra/database/my_recordset_ptr.h>
#include <platform/clock.h>
#include <platform/replaceable.h>

#include <tests/support/recorders.h>
#include <tests/support/temporary_folder.h>

/// A real database in a folder of its own, with the statements that a test needs run on it.
class TestDatabase {
  public:
    explicit TestDatabase(std::initializer_list<const char*> statements = {}) {
        EXPECT_EQ(m_database.CreateDatabase(path().c_str()), path());
        m_connection = m_database.OpenDB(path().c_str(), 0, ado20::adUseClient);
        for (const char* statement : statements) run(statement);
    }
    std::string path() const { return m_folder.path("essai.mdb"); }
    const TemporaryFolder& folder() const { return m_folder; }
    const _ConnectionPtr& connection() const { return m_connection; }
    void run(const char* statement) const { m_connection->Execute(statement); }
    void open(MyRecordsetPtr& records, const char* source,
              LockTypeEnum lock = ado20::adLockOptimistic) const {
        ASSERT_EQ(records.Open(source, m_connection, ado20::adCmdUnknown, ado20::adOpenKeyset, lock), 0)
            << records.m_LastError.m_Description.GetString();
    }

  private:
    TemporaryFolder m_folder;
    Database m_database;
    _ConnectionPtr m_connection;
};

/// The traces of errors among those that were recorded, from "***" on.
inline std::vector<std::string> errorLines() {
    std::vector<std::string> found;
    for (const std::string& line : RecordedTraces::lines())
        if (const std::size_t start = line.find("***Erreur"); start != std::string::npos && start <= 2)
            found.push_back(line);
    return found;
}

/// 7 May 2024, 14:30:15.
class OneMay : public platform::Clock {
  public:
    std::int64_t now() override { return 0; }
    platform::LocalTime localTime(std::int64_t) override { return {2024, 5, 7, 14, 30, 15, true}; }

  private:
    platform::Replaced<platform::Clock> m_inForce{platform::replaceClock, *this};
};
constexpr double oneMay = 45419 + (14 * 3600 + 30 * 60 + 15) / 86400.0;
