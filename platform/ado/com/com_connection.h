#pragma once
#include <platform/ado/com/com_support.h>

namespace ado20::com {

/// A connection of ADO itself.
class ComConnection : public _Connection {
  public:
    ComConnection();
    HResult Open(std::string_view connectionString, std::string_view user, std::string_view password,
                 long options) override;
    HResult Close() override { return check(m_inner->Close()); }
    _RecordsetPtr Execute(std::string_view command, std::int64_t* recordsAffected, long options) override;
    long BeginTrans() override;
    HResult CommitTrans() override { return check(m_inner->CommitTrans()); }
    HResult RollbackTrans() override { return check(m_inner->RollbackTrans()); }
    _RecordsetPtr OpenSchema(SchemaEnum schema) override;

    std::vector<ProviderError> GetErrors() override;
    std::string GetConnectionString() override;
    void PutConnectionString(std::string_view connectionString) override {
        check(m_inner->put_ConnectionString(Bstr(connectionString).get()));
    }
    ConnectModeEnum GetMode() override;
    void PutMode(ConnectModeEnum mode) override { check(m_inner->put_Mode(mode)); }
    CursorLocationEnum GetCursorLocation() override;
    void PutCursorLocation(CursorLocationEnum location) override {
        check(m_inner->put_CursorLocation(location));
    }
    ObjectStateEnum GetState() override;
    std::string GetProvider() override;
    Engine GetEngine() override { return Engine::com; }
    std::uintptr_t GetHandle() override { return reinterpret_cast<std::uintptr_t>(m_inner.get()); }

    IAdoConnection* inner() const { return m_inner.get(); }

  private:
    ComApartment m_apartment;
    ComPointer<IAdoConnection> m_inner;
};

}  // namespace ado20::com
