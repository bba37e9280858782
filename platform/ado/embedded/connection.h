#pragma once
#include <memory>
#include <string>
#include <vector>

#include <platform/ado/embedded/database.h>

namespace ado20::embedded {

class Recordset;

/// A connection of the embedded engine.
class Connection : public _Connection {
  public:
    ~Connection() override;
    HResult Open(std::string_view connectionString, std::string_view user, std::string_view password,
                 long options) override;
    HResult Close() override;
    _RecordsetPtr Execute(std::string_view command, std::int64_t* recordsAffected, long options) override;
    long BeginTrans() override;
    HResult CommitTrans() override;
    HResult RollbackTrans() override;
    _RecordsetPtr OpenSchema(SchemaEnum schema) override;

    std::vector<ProviderError> GetErrors() override;
    std::string GetConnectionString() override { return m_string; }
    void PutConnectionString(std::string_view connectionString) override;
    ConnectModeEnum GetMode() override { return m_mode; }
    void PutMode(ConnectModeEnum mode) override;
    CursorLocationEnum GetCursorLocation() override { return m_location; }
    void PutCursorLocation(CursorLocationEnum location) override { m_location = location; }
    ObjectStateEnum GetState() override { return m_database != nullptr ? adStateOpen : adStateClosed; }
    std::string GetProvider() override { return m_database != nullptr ? "SQLite" : ""; }
    Engine GetEngine() override { return Engine::embedded; }
    std::uintptr_t GetHandle() override { return reinterpret_cast<std::uintptr_t>(this); }

    /// Opens the file `Data Source` of the string; `create` makes it, and refuses one that is there.
    void openFile(std::string_view connectionString, bool create);
    /// Throws 3704 while it is closed.
    const std::shared_ptr<Database>& database();
    void enter(Recordset* recordset) { m_recordsets.push_back(recordset); }
    void leave(Recordset* recordset) { std::erase(m_recordsets, recordset); }

    /// Recordsets read their records anew.
    void forgetRows();

  private:
    HResult endTransaction(const char* outermost, const std::string& inner);
    void closeRecordsets();

    std::shared_ptr<Database> m_database;
    std::string m_string;
    ConnectModeEnum m_mode = adModeUnknown;
    CursorLocationEnum m_location = adUseServer;
    long m_level = 0;
    std::vector<Recordset*> m_recordsets;
    std::vector<ProviderError> m_openErrors;
};

}  // namespace ado20::embedded
