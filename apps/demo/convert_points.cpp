#include "convert_points.h"

#include <cmath>

namespace {

/// Metres to a tenth of a millimetre, degrees to as much.
double rounded(double coordinate, const CtesProj& projection) {
    const bool inDegrees = projection.Constants().kind == geodesy::ProjectionKind::geographic;
    const double steps = inDegrees ? 1e9 : 1e4;
    return std::round(coordinate * steps) / steps;
}

/// False when the record's point cannot be converted or saved.
bool convertRecord(MyRecordsetPtr& records, bool hasHeight, CDialProjections& choice, int& converted) {
    double point[3] = {0, 0, 0};
    if (!records.GetValue("X", point[0]) || !records.GetValue("Y", point[1])) return true;
    const bool withHeight = hasHeight && records.GetValue("Z", point[2]);
    if (choice.Transform(point, point) == 0) return false;
    if (!records.SetValue("X", rounded(point[0], *choice.m_pFinale)) ||
        !records.SetValue("Y", rounded(point[1], *choice.m_pFinale)))
        return false;
    if (withHeight && !records.SetValue("Z", point[2])) return false;
    ++converted;
    return records.Update(1) >= 0;
}

/// Puts a transaction back that was not ended; what cannot be put back any more is not there either.
void rollBack(const _ConnectionPtr& connection) try {
    connection->RollbackTrans();
} catch (const _com_error&) {
}

}  // namespace

PointConversion convertPoints(const _ConnectionPtr& connection, const char* table, CDialProjections& choice) {
    PointConversion result;
    MyRecordsetPtr records;
    if (records.Open(table, connection, ado20::adCmdTable, ado20::adOpenKeyset, ado20::adLockOptimistic) <
            0 ||
        records.GetIndexFromName("X") < 0 || records.GetIndexFromName("Y") < 0)
        return {0, 0, "La table n'a pas de champs X et Y, ou ne s'ouvre pas"};
    const bool hasHeight = records.GetIndexFromName("Z") >= 0;
    bool begun = false;
    try {
        connection->BeginTrans();
        begun = true;
        int row = 1;
        for (records.MoveFirst(); records.Eof() == 0 && result.failedRow == 0; records.MoveNext(), ++row)
            if (!convertRecord(records, hasHeight, choice, result.converted)) result.failedRow = row;
        if (result.failedRow == 0)
            connection->CommitTrans();
        else
            connection->RollbackTrans();
    } catch (const _com_error& error) {
        if (begun) rollBack(connection);
        return {0, result.failedRow, error.Description()};
    }
    return result;
}
