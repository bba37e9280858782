#include "convert_points.h"

namespace {

/// False when the record's point cannot be converted or saved.
bool convertRecord(MyRecordsetPtr& records, bool hasHeight, CDialProjections& choice, int& converted) {
    double point[3] = {0, 0, 0};
    if (!records.GetValue("X", point[0]) || !records.GetValue("Y", point[1])) return true;
    const bool withHeight = hasHeight && records.GetValue("Z", point[2]);
    if (choice.Transform(point, point) == 0) return false;
    if (!records.SetValue("X", point[0]) || !records.SetValue("Y", point[1])) return false;
    if (withHeight && !records.SetValue("Z", point[2])) return false;
    ++converted;
    return records.Update(1) >= 0;
}

}  // namespace

PointConversion convertPoints(const _ConnectionPtr& connection, const char* table, CDialProjections& choice) {
    PointConversion result;
    MyRecordsetPtr records;
    if (records.Open(table, connection, ado20::adCmdTable, ado20::adOpenKeyset, ado20::adLockOptimistic) <
            0 ||
        records.GetIndexFromName("X") < 0 || records.GetIndexFromName("Y") < 0)
        return {0, 1};
    const bool hasHeight = records.GetIndexFromName("Z") >= 0;
    connection->BeginTrans();
    int row = 1;
    for (records.MoveFirst(); records.Eof() == 0 && result.failedRow == 0; records.MoveNext(), ++row)
        if (!convertRecord(records, hasHeight, choice, result.converted)) result.failedRow = row;
    if (result.failedRow == 0)
        connection->CommitTrans();
    else
        connection->RollbackTrans();
    return result;
}
