#pragma once
#include <array>
#include <string>
#include <vector>

#include <platform/ado/embedded/recordset.h>

namespace ado20::embedded {

/// The fields of a recordset, found by name through a table of hashes; `release` cuts them off when it
/// closes.
class FieldCollection : public Fields {
  public:
    explicit FieldCollection(Recordset* owner);
    ~FieldCollection() override;
    long GetCount() override;
    FieldPtr GetItem(long index) override;
    FieldPtr GetItem(std::string_view name) override;
    HResult Append(std::string_view name, DataTypeEnum type, std::int64_t definedSize,
                   long attributes) override;
    /// Index of the first field of that name, or the index itself; 3265 when there is none.
    std::size_t indexOf(std::string_view name) const { return existing(find(name)); }
    std::size_t indexOf(long index) const { return existing(static_cast<std::size_t>(index)); }
    void release();

  private:
    std::size_t existing(std::size_t index) const {
        if (index >= m_names.size()) throw _com_error(hrItemNotFound);
        return index;
    }
    /// The number of fields when there is none.
    std::size_t find(std::string_view name) const;
    std::size_t lookUp(std::string_view name) const;
    void rebuild();

    Recordset* m_owner;
    std::vector<FieldPtr> m_fields;
    std::vector<std::string> m_names;
    std::vector<std::uint32_t> m_hashes;  ///< by hash: index of a field plus 1, 0 for none
    /// By a text's address: the first field of a name, as one that stood there was answered.
    mutable std::array<std::uint32_t, 16> m_guesses{};
};

class ColumnField : public Field {
  public:
    ColumnField(Recordset* owner, std::size_t column) : m_owner(owner), m_column(column) {}
    std::string GetName() override { return column().name; }
    DataTypeEnum GetType() override { return column().type; }
    std::int64_t GetDefinedSize() override { return column().definedSize; }
    std::int64_t GetActualSize() override;
    long GetAttributes() override;
    VariantView GetView() override { return owner().value(m_column, true); }
    void PutValue(const Variant& value) override { owner().put(m_column, value); }
    Variant GetOriginalValue() override { return Variant(owner().value(m_column, false)); }
    void release() { m_owner = nullptr; }

  private:
    Recordset& owner() const;
    const Column& column() const;

    Recordset* m_owner;
    std::size_t m_column;
};

}  // namespace ado20::embedded
