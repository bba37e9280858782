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

inline std::string shown(const ado20::Variant& value) {
    if (value.type() == ado20::VarType::bytes) return std::to_string(value.view().data.size()) + " bytes";
    return value.isNull() ? "null" : value.text();
}

inline std::string textOf(const _RecordsetPtr& records, const ado20::Variant& field) {
    return shown(records->GetFields()->GetItem(field)->GetValue());
}

inline void put(const _RecordsetPtr& records, const char* field, const ado20::Variant& value) {
    records->GetFields()->GetItem(std::string_view(field))->PutValue(value);
}

inline std::string fileString(const std::string& path, const std::string& more = {}) {
    return "Provider=SQLite;Data Source=" + path + ";" + more;
}

/// A connection of the embedded engine on which `sql` was executed.
inline _ConnectionPtr connected(const std::string& string, const std::string& sql = {}) {
    const _ConnectionPtr connection = ado20::createConnection(ado20::Engine::embedded);
    connection->Open(string);
    if (!sql.empty()) connection->Execute(sql);
    return connection;
}

/// A new database of the embedded engine with what `sql` makes in it.
inline _ConnectionPtr newDatabase(const std::string& path, const char* sql) {
    ado20::createCatalog(ado20::Engine::embedded)->Create(fileString(path));
    // Tests do not wait for the disk.
    return connected(fileString(path), std::string("PRAGMA synchronous = OFF; ") + sql);
}

inline _RecordsetPtr opened(const _ConnectionPtr& connection, const std::string& source) {
    const _RecordsetPtr records = ado20::createRecordset(ado20::Engine::embedded);
    records->Open(source, connection, ado20::adOpenStatic, ado20::adLockOptimistic);
    return records;
}

/// The first value that a statement gives.
inline std::string firstOf(const _ConnectionPtr& connection, const std::string& sql) {
    return textOf(connection->Execute(sql), 0L);
}
