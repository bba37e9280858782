#pragma once
#include <memory>
#include <string>

#include <platform/ado/ado.h>
#include <platform/ole_date_time.h>
#include <tests/support/temporary_folder.h>

/// What a failed call gives: its HRESULT, 0 for success.
inline ado20::HResult failureOf(auto&& call) {
    try {
        call();
        return ado20::hrOk;
    } catch (const _com_error& error) {
        return error.Error();
    }
}

inline std::string textOf(const _RecordsetPtr& records, const char* field) {
    const ado20::Variant value = records->GetFields()->GetItem(std::string_view(field))->GetValue();
    return value.isNull() ? "null" : value.text();
}

inline void put(const _RecordsetPtr& records, const char* field, const ado20::Variant& value) {
    records->GetFields()->GetItem(std::string_view(field))->PutValue(value);
}

inline std::string fileString(const std::string& path, const std::string& more = {}) {
    return "Provider=SQLite;Data Source=" + path + ";" + more;
}

/// A new database of the embedded engine with what `sql` makes in it.
inline _ConnectionPtr newDatabase(const std::string& path, const char* sql) {
    const _ConnectionPtr connection = ado20::createCatalog(ado20::Engine::embedded)->Create(fileString(path));
    // Tests do not wait for the disk.
    connection->Execute("PRAGMA synchronous = OFF");
    connection->Execute(sql);
    return connection;
}

inline _RecordsetPtr opened(const _ConnectionPtr& connection, const char* source,
                            ado20::LockTypeEnum lock = ado20::adLockOptimistic) {
    const _RecordsetPtr records = ado20::createRecordset(ado20::Engine::embedded);
    records->Open(source, connection, ado20::adOpenStatic, lock);
    return records;
}
