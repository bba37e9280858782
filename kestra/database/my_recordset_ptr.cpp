#include <kestra/database/my_recordset_ptr.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include <dorsel/trace.h>
#include <kestra/database/result_text.h>
#include <kestra/variables/variable.h>
#include <platform/cp1252.h>

namespace {

constexpr int isTrue = -1;
constexpr long failedMove = 1;

/// Does what may throw; a failure is reported and gives the neutral value.
template <class Result>
Result attempt(MyRecordsetPtr& recordset, const char* where, Result neutral, auto&& work) {
    try {
        return work();
    } catch (...) {
        recordset.Erreur(kestra::failureInFlight(), where);
        return neutral;
    }
}

std::int32_t narrow(std::int64_t number) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(number, Limits::min(), Limits::max()));
}

constexpr RecordsetRelease release = {
    [](MyRecordsetPtr* recordset) { recordset->m_pRecordset.Release(); },
    [](MyRecordsetPtr* recordset) { delete recordset; },
};
[[maybe_unused]] const bool registered = (replaceRecordsetRelease(&release), true);

}  // namespace

MyRecordsetPtr::MyRecordsetPtr() {
    try {
        m_pRecordset = ado20::createRecordset();
    } catch (...) {
        // Every operation then says that there is no recordset.
        m_LastError.SetError(kestra::failureInFlight());
    }
}

MyRecordsetPtr::MyRecordsetPtr(_RecordsetPtr recordset) : m_pRecordset(std::move(recordset)) {}

MyRecordsetPtr::~MyRecordsetPtr() {
    // Kept: a copy closes the recordset that it shares; hosts hand copies on only for good.
    Close();
}

long MyRecordsetPtr::Open(const char* source, _ConnectionPtr connection, long options, CursorTypeEnum cursor,
                          LockTypeEnum lock) {
    m_Position = -1;
    Close();
    return attempt(*this, "MyRecordsetPtr::Open", -1L, [&] {
        const bool isWritable = (connection->GetMode() & ado20::adModeWrite) != 0;
        m_pRecordset->Open(source, connection, cursor, isWritable ? lock : ado20::adLockReadOnly, options);
        return 0L;
    });
}

long MyRecordsetPtr::Close() {
    return attempt(*this, "MyRecordsetPtr::Close", -1L, [&] {
        const bool isOpen = m_pRecordset && (m_pRecordset->GetState() & ado20::adStateOpen) != 0;
        if (isOpen) m_pRecordset->Close();
        return 0L;
    });
}

long MyRecordsetPtr::Move(long records, long start) {
    const std::int64_t target = records, distance = target - m_Position;
    const bool isNear = m_Position > 0 && std::abs(distance) < target;
    if (start == -1 && !isNear) return Move(records, ado20::adBookmarkFirst);
    const long result = attempt(*this, "Erreur ADO::Move ", failedMove, [&]() -> long {
        if (start == -1) {
            const long moved = m_pRecordset->Move(distance);
            m_Position = narrow(target);
            return moved;
        }
        const long moved = m_pRecordset->Move(target, static_cast<int>(start));
        m_Position = narrow(m_pRecordset->GetAbsolutePosition() - 1);
        return moved;
    });
    if (result == failedMove) m_Position = 0;
    return result;
}

long MyRecordsetPtr::MoveFirst() {
    // Kept: this and `MoveLast` report under the name of `MoveNext`; support reads the traces so.
    return attempt(*this, "MyRecordsetPtr::MoveNext", -1L, [&] {
        const long moved = m_pRecordset->MoveFirst();
        m_Position = 0;
        return moved;
    });
}

long MyRecordsetPtr::MoveNext() {
    // Kept: the position advances even when the move fails; lists count their rows by it.
    m_Position = narrow(std::int64_t{m_Position} + 1);
    return attempt(*this, "MyRecordsetPtr::MoveNext", -1L, [&] { return long{m_pRecordset->MoveNext()}; });
}

long MyRecordsetPtr::MoveLast() {
    return attempt(*this, "MyRecordsetPtr::MoveNext", -1L, [&] {
        const long moved = m_pRecordset->MoveLast();
        m_Position = narrow(m_pRecordset->GetAbsolutePosition() - 1);
        return moved;
    });
}

int MyRecordsetPtr::Eof() {
    return attempt(*this, "MyRecordsetPtr::Eof", isTrue, [&] { return m_pRecordset->GetEOF() ? isTrue : 0; });
}

int MyRecordsetPtr::Bof() {
    // Kept: the name stands in capitals in the traces.
    return attempt(*this, "MyRecordsetPtr::BOF", isTrue, [&] { return m_pRecordset->GetBOF() ? isTrue : 0; });
}

long MyRecordsetPtr::GetRecordCount() {
    return attempt(*this, "Erreur ADO::GetRecordCount ", 0L,
                   [&] { return long{narrow(m_pRecordset->GetRecordCount())}; });
}

long MyRecordsetPtr::GetPosition() {
    m_Position = attempt(*this, "Erreur ADO::GetPosition ", std::int32_t{0},
                         [&] { return narrow(m_pRecordset->GetAbsolutePosition() - 1); });
    return m_Position;
}

ado20::Variant MyRecordsetPtr::GetBookmark() {
    return attempt(*this, "MyRecordsetPtr::GetBookmark", ado20::Variant::null(),
                   [&] { return m_pRecordset->GetBookmark(); });
}

long MyRecordsetPtr::MoveTo(const ado20::Variant& bookmark) {
    return attempt(*this, "MyRecordsetPtr::MoveTo", -1L, [&] {
        m_pRecordset->PutBookmark(bookmark);
        m_Position = narrow(m_pRecordset->GetAbsolutePosition() - 1);
        return 0L;
    });
}

int MyRecordsetPtr::Find(const char* criteria, int skip, int fromFirst) {
    if (fromFirst != 0) MoveFirst();
    return attempt(*this, "Find impossible : ", -1, [&] {
        m_pRecordset->Find(criteria != nullptr ? criteria : "", skip, ado20::adSearchForward, "");
        return static_cast<int>(GetPosition());
    });
}

long MyRecordsetPtr::Filter(const char* criteria) {
    return attempt(*this, "MyRecordsetPtr::Filter", -1L, [&] {
        m_pRecordset->PutFilter(criteria != nullptr ? criteria : "");
        m_Position = 0;
        return 0L;
    });
}

long MyRecordsetPtr::Sort(const char* fields) {
    return attempt(*this, "MyRecordsetPtr::Sort", -1L, [&] {
        m_pRecordset->PutSort(fields != nullptr ? fields : "");
        m_Position = 0;
        return 0L;
    });
}

long MyRecordsetPtr::AddNew() {
    return attempt(*this, "MyRecordsetPtr::AddNew", -1L, [&] { return long{m_pRecordset->AddNew()}; });
}

long MyRecordsetPtr::Update(int cancelOnError) {
    const long updated =
        attempt(*this, "MyRecordsetPtr::Update()", -1L, [&] { return long{m_pRecordset->Update()}; });
    if (updated < 0 && (cancelOnError & 1) != 0) CancelUpdate();
    return updated;
}

long MyRecordsetPtr::CancelUpdate() {
    return attempt(*this, "MyRecordsetPtr::CancelUpdate()", -1L,
                   [&] { return long{m_pRecordset->CancelUpdate()}; });
}

int MyRecordsetPtr::GetFieldCount() {
    return attempt(*this, "Erreur GetFieldCount ", 0,
                   [&] { return static_cast<int>(m_pRecordset->GetFields()->GetCount()); });
}

const char* MyRecordsetPtr::GetFieldName(long index) {
    return attempt(*this, "Erreur GetFieldName ", "", [&] {
        return kestra::keepDatabaseText(m_pRecordset->GetFields()->GetItem(index)->GetName());
    });
}

int MyRecordsetPtr::GetIndexFromName(const char* name) {
    return attempt(*this, "MyRecordsetPtr::GetIndexFromName", -1, [&] {
        const std::string wanted = name != nullptr ? name : "";
        const int count = GetFieldCount();
        for (int index = 0; index < count; ++index)
            if (platform::equalNoCase1252(GetFieldName(index), wanted)) return index;
        return -1;
    });
}

int MyRecordsetPtr::Erreur(const char* message, const char* where) {
    CString text("\n ***Erreur ");
    text += where;
    text += ":";
    text += message;
    // Kept: the text is its own format, which only shows where it has "%%"; any other '%' stands for itself.
    text.Replace("%%", "%");
    mprintf("%s", text.GetString());
    return -1;
}

int MyRecordsetPtr::Erreur(const _com_error& error, const char* where) {
    m_LastError.SetError(error);
    mprintf("\n ***Erreur %s:%s", where != nullptr ? where : "", error.Description().c_str());
    return -1;
}
