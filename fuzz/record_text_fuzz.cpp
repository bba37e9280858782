#include <cstdint>
#include <cstdlib>
#include <string>

#include <kestra/database/my_recordset_ptr.h>

/// A record of two texts that lives in memory: its packed form must hold both as they were put, and each
/// field alone must come out with its name and its mark at the end.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::string first = input.substr(0, size / 2).c_str(), second = input.substr(size / 2).c_str();
    MyRecordsetPtr records;
    const auto fields = records.m_pRecordset->GetFields();
    fields->Append("A", ado20::adLongVarChar);
    fields->Append("B", ado20::adLongVarChar);
    records.m_pRecordset->Open("", nullptr);
    records.AddNew();
    if (!records.SetValue("A", first.c_str()) || !records.SetValue("B", second.c_str()) ||
        records.Update(0) < 0)
        std::abort();
    CString text;
    if (records.GetString(text, ';') != 2 || text.view() != ";A|" + first + "\xFF;B|" + second + "\xFF")
        std::abort();
    const std::string packed =
        Database::PackRecord(records.m_pRecordset->GetFields()->GetItem("A").get(), size % 8 | 3);
    if (!packed.ends_with("A=" + first + '|')) std::abort();
    return 0;
}
