#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <platform/ado/ado.h>

/// The records of an open recordset as rows of texts, one after the other. Failures are thrown as
/// `_com_error`.
class TableRows {
  public:
    struct Column {
        std::string name;
        bool isNumber = false;
        std::size_t width = 0;  ///< characters of its name and of its values, as far as they were sampled
    };

    explicit TableRows(_RecordsetPtr records);
    TableRows(const TableRows&) = delete;
    TableRows& operator=(const TableRows&) = delete;

    std::vector<Column>& columns() { return m_columns; }
    std::int64_t count();
    /// Measures the columns over the first rows, and starts again at the first one.
    void sample(int rows);
    /// Goes to the next row, at first to the first one; false behind the last one.
    bool next();
    /// Text of a value of the row: "" for a null, hexadecimal digits for bytes. Valid until the next call.
    std::string_view text(std::size_t column);

  private:
    void rewind();

    _RecordsetPtr m_records;
    std::vector<ado20::FieldPtr> m_fields;
    std::vector<Column> m_columns;
    std::string m_text;
    bool m_hasStarted = false;
};
