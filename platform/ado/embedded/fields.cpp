#include <algorithm>

#include <platform/ado/embedded/fields.h>
#include <platform/cp1252.h>

namespace ado20::embedded {

namespace {

unsigned upper(char c) {
    return platform::upperCase1252[static_cast<unsigned char>(c)];
}

/// Names differ in length, at their ends or in the middle; looking at all of a name would cost more than it
/// saves.
std::size_t hashOf(std::string_view name) {
    if (name.empty()) return 0;
    const std::size_t size = name.size();
    return size + std::size_t{31} * upper(name[size - 1]) + std::size_t{7} * upper(name[0]) +
           std::size_t{131} * upper(name[size / 2]);
}

/// Mostly a host writes a name as the table does.
bool sameName(std::string_view first, std::string_view second) {
    return first == second || platform::equalNoCase1252(first, second);
}

}  // namespace

FieldCollection::FieldCollection(Recordset* owner) : m_owner(owner) {
    rebuild();
}

FieldCollection::~FieldCollection() {
    release();
}

void FieldCollection::release() {
    m_owner = nullptr;
    for (const FieldPtr& field : m_fields) static_cast<ColumnField*>(field.get())->release();
}

void FieldCollection::rebuild() {
    const std::vector<Column>& columns = m_owner->columns();
    for (std::size_t i = m_fields.size(); i < columns.size(); ++i) {
        m_fields.emplace_back(new ColumnField(m_owner, i));
        m_names.push_back(columns[i].name);
    }
    std::size_t size = 16;
    while (size < columns.size() * 2) size *= 2;
    m_hashes.assign(size, 0);
    for (std::size_t i = 0; i < m_names.size(); ++i) {
        std::size_t at = hashOf(m_names[i]) & (size - 1);
        while (m_hashes[at] != 0) at = (at + 1) & (size - 1);
        m_hashes[at] = static_cast<std::uint32_t>(i + 1);
    }
}

std::size_t FieldCollection::find(std::string_view name) const {
    // A loop over records asks with the same literals again and again: where a text stands tells which field
    // it named before. Its words decide.
    const auto address = reinterpret_cast<std::uintptr_t>(name.data());
    std::uint32_t& guess = m_guesses[(address ^ address >> 4) % m_guesses.size()];
    if (guess < m_names.size() && m_names[guess] == name) return guess;
    return guess = static_cast<std::uint32_t>(lookUp(name));
}

std::size_t FieldCollection::lookUp(std::string_view name) const {
    const std::size_t mask = m_hashes.size() - 1;
    for (std::size_t at = hashOf(name) & mask; m_hashes[at] != 0; at = (at + 1) & mask)
        if (sameName(m_names[m_hashes[at] - 1], name)) return m_hashes[at] - 1;
    return m_names.size();
}

long FieldCollection::GetCount() {
    return static_cast<long>(m_fields.size());
}

FieldPtr FieldCollection::GetItem(long index) {
    return m_fields[indexOf(index)];
}

FieldPtr FieldCollection::GetItem(std::string_view name) {
    return m_fields[indexOf(name)];
}

HResult FieldCollection::Append(std::string_view name, DataTypeEnum type, std::int64_t definedSize,
                                long attributes) {
    if (m_owner == nullptr || m_owner->GetState() == adStateOpen) throw _com_error(hrObjectOpen);
    if (name.empty() || find(name) < m_names.size()) throw _com_error(hrInvalidArgument);
    Column column;
    column.name = name;
    declare(column, type, definedSize);
    column.attributes |= attributes;
    m_owner->append(std::move(column));
    rebuild();
    return hrOk;
}

Recordset& ColumnField::owner() const {
    if (m_owner == nullptr) throw _com_error(hrObjectClosed);
    return *m_owner;
}

const Column& ColumnField::column() const {
    return owner().columns()[m_column];
}

std::int64_t ColumnField::GetActualSize() {
    const VariantView value = GetView();
    if (value.isNull()) return 0;
    const bool sized = value.type == VarType::text || value.type == VarType::bytes;
    return sized ? static_cast<std::int64_t>(value.data.size()) : column().definedSize;
}

long ColumnField::GetAttributes() {
    const long attributes = column().attributes;
    return owner().isWritable() ? attributes : attributes & ~adFldUpdatable;
}

}  // namespace ado20::embedded

namespace ado20 {

FieldPtr Fields::GetItem(const Variant& index) {
    if (index.type() == VarType::text) return GetItem(index.view().data);
    return GetItem(static_cast<long>(index.int32()));
}

}  // namespace ado20
