#include <kestra/variables/variable.h>

#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include <kestra/variables/number_text.h>

namespace {

const RecordsetRelease* recordsetRelease = nullptr;

/// Calls what may throw from a place that may not.
void swallow(auto&& work) noexcept {
    try {
        work();
    } catch (...) {  // NOLINT(bugprone-empty-catch): by contract
    }
}

void releaseRecordset(MyRecordsetPtr* recordset, bool live) noexcept {
    if (recordset == nullptr || recordsetRelease == nullptr) return;
    if (live) swallow([&] { recordsetRelease->releaseInterface(recordset); });
    swallow([&] { recordsetRelease->destroy(recordset); });
}

void copyName(char (&name)[20], const char* text) {
    if (text != nullptr) std::memcpy(name, text, strnlen(text, sizeof name));
}

bool beginsNumber(const char* text) {
    return *text != '\0' && std::strchr("+-0123456789.", *text) != nullptr;
}

/// The number that an operand counts as in arithmetic; none when it is neither a number nor a text.
std::optional<double> numberOf(CVariable& operand) {
    if (operand.m_type == CVariable::vtNumber) return operand.m_value.number;
    const char* text = operand.lpctstr();
    return text != nullptr ? std::optional(kestra::textToNumber(text)) : std::nullopt;
}

}  // namespace

const RecordsetRelease* replaceRecordsetRelease(const RecordsetRelease* release) {
    return std::exchange(recordsetRelease, release);
}

CVariable::CVariable(double number) : m_type(vtNumber), m_value{.number = number} {}

CVariable::CVariable(MyRecordsetPtr* recordset) : m_type(vtRecordset), m_value{.recordset = recordset} {}

CVariable::CVariable(void* block) : m_type(vtBlock), m_value{.pointer = block} {}

CVariable::CVariable(const char* name, CString text)
    : m_type(vtText), m_value{.text = new CString(std::move(text))} {
    copyName(m_name, name);
}

CVariable::CVariable(const char* name, Function function)
    : m_type(vtFunction), m_value{.function = function} {
    copyName(m_name, name);
}

CVariable::CVariable(const char* name, VType type, void* pointer)
    : m_type(type), m_value{.pointer = pointer} {
    copyName(m_name, name);
}

CVariable::CVariable(const char* name) {
    copyName(m_name, name);
}

CVariable::~CVariable() {
    Free();
}

void CVariable::Free() {
    const VType type = std::exchange(m_type, vtEmpty);
    const Value value = std::exchange(m_value, Value{});
    switch (type) {
        case vtRecord:
            delete value.record;
            break;
        case vtText:
            delete value.text;
            break;
        case vtBlock:
            ::operator delete(value.pointer);
            break;
        case vtRecordset:
            releaseRecordset(value.recordset, false);
            break;
        case vtLiveRecordset:
            releaseRecordset(value.recordset, true);
            break;
        default:
            break;
    }
}

const char* CVariable::lpctstr() {
    if (m_type == vtText) return m_value.text != nullptr ? m_value.text->GetString() : nullptr;
    if (m_type != vtShortText) return nullptr;
    // Hosts fill the eight bytes themselves: a text that lost its zero ends here all the same.
    m_value.shortText[sizeof m_value.shortText - 1] = '\0';
    return m_value.shortText;
}

int CVariable::ToCstring() {
    if (m_type == vtText) return 1;
    const bool converts = m_type == vtNumber || m_type == vtShortText;
    auto text = std::make_unique<CString>(lpctstr());
    if (m_type == vtNumber) *text = kestra::numberToText(m_value.number);
    Free();
    m_type = vtText;
    m_value.text = text.release();
    return converts ? 1 : 0;
}

int CVariable::fSetValFrom(CVariable* source) {
    const VType type = source != nullptr ? source->m_type : vtEmpty;
    const bool copies = type == vtNumber || type == vtShortText || type == vtText;
    if (copies && source == this) return 1;
    Value value{};
    // The text is copied before the release, since a shallow copy shares it.
    if (copies) value = source->m_value;
    if (type == vtText) value.text = value.text != nullptr ? new CString(*value.text) : new CString;
    Free();
    if (!copies) return 0;
    m_type = type;
    m_value = value;
    return 1;
}

int CVariable::addToNumber(CVariable& other) {
    if (other.m_type == vtNumber) {
        m_value.number += other.m_value.number;
        return 1;
    }
    const char* text = other.lpctstr();
    if (text == nullptr) return 0;
    // Kept: a text with leading blanks is ignored here, though the other operations read it; formulas rely on
    // it.
    if (beginsNumber(text)) m_value.number += kestra::textToNumber(text);
    return 1;
}

int CVariable::appendToText(CVariable& other) {
    ToCstring();
    if (m_value.text == nullptr) m_value.text = new CString;
    if (other.m_type == vtNumber) {
        *m_value.text += kestra::numberToText(other.m_value.number);
    } else if (other.m_type == vtShortText) {
        *m_value.text += other.lpctstr();
    } else if (other.m_type == vtText && other.m_value.text != nullptr) {
        *m_value.text += *other.m_value.text;
    }
    return 1;
}

int CVariable::fAjoute(CVariable* other) {
    CVariable none;
    CVariable& operand = other != nullptr ? *other : none;
    switch (m_type) {
        case vtEmpty:
            return fSetValFrom(&operand);
        case vtNumber:
            return addToNumber(operand);
        case vtShortText:
        case vtText:
            return appendToText(operand);
        default:
            return 0;
    }
}

int CVariable::apply(CVariable* other, double start, double (*operation)(double, double)) {
    if (m_type == vtEmpty) {
        m_type = vtNumber;
        m_value.number = start;
    }
    if (m_type != vtNumber || other == nullptr) return 0;
    const std::optional<double> operand = numberOf(*other);
    if (!operand) return 0;
    m_value.number = operation(m_value.number, *operand);
    return 1;
}

int CVariable::fSubstract(CVariable* other) {
    return apply(other, 0.0, [](double a, double b) { return a - b; });
}

int CVariable::fMultiplie(CVariable* other) {
    return apply(other, 1.0, [](double a, double b) { return a * b; });
}

int CVariable::fDivise(CVariable* other) {
    return apply(other, 1.0, [](double a, double b) { return a / b; });
}

int CVariable::Compare(CVariable* other) {
    if (other == nullptr) return -2;
    if (m_type == vtNumber && other->m_type == vtNumber) {
        const double mine = m_value.number;
        const double theirs = other->m_value.number;
        return (mine > theirs) - (theirs > mine);
    }
    // Kept: a heap text compares with a short text only when the short text is on the left; formulas rely on
    // it.
    if (m_type != vtShortText && other->m_type == vtShortText) return -2;
    const char* mine = lpctstr();
    const char* theirs = other->lpctstr();
    if (mine == nullptr || theirs == nullptr) return -2;
    const int order = std::strcmp(mine, theirs);
    return (order > 0) - (order < 0);
}
