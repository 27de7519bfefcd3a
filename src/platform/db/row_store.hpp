#pragma once
// The rows of a recordset, packed: one byte buffer holds every row's cells one after another,
// each a tag byte and its value (a number in its own width, text as a length and its UTF-8
// bytes), and a row is found by its offset. A cell is decoded to a Variant (or the driver's
// QVariant) only when it is read. A row of a glass list that took two kilobytes as Variants
// and QVariants takes about a hundred and fifty bytes here.
//
// A changed cell rewrites its row at the end of the buffer (the old bytes stay unused):
// recordsets change few rows, and only one at a time.

#include "platform/core/variant.hpp"

#include <QVariant>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace qr::db {

class RowStore {
  public:
    /// A store whose rows have `columns` cells each.
    explicit RowStore(std::size_t columns = 0) : m_columns(columns) {}

    std::size_t columns() const { return m_columns; }
    std::size_t rows() const { return m_rowStarts.size(); }
    /// Bytes held: the packed cells and the row offsets.
    std::size_t bytes() const {
        return m_bytes.size() + m_rowStarts.size() * sizeof(std::size_t);
    }

    /// Start a new row; then append exactly columns() cells to it.
    void beginRow() { m_rowStarts.push_back(m_bytes.size()); }
    void append(const Variant& value);
    /// A driver value, kept so that it binds back as it was read (its integer type included).
    void append(const QVariant& raw);

    /// The cell as it was appended as a Variant.
    Variant value(std::size_t row, std::size_t column) const;
    /// The cell as it was appended as a driver value.
    QVariant raw(std::size_t row, std::size_t column) const;

    /// Replace one cell of a row.
    void set(std::size_t row, std::size_t column, const Variant& value);
    void set(std::size_t row, std::size_t column, const QVariant& raw);

    void clear();
    /// Give back the spare capacity the buffer grew by while rows were added.
    void shrinkToFit();

  private:
    const unsigned char* cell(std::size_t row, std::size_t column) const;
    /// Copy the row with its `column` cell left out, append `cell` in its place and point the
    /// row at the copy.
    template <class Value>
    void rewrite(std::size_t row, std::size_t column, const Value& value);

    std::size_t m_columns;
    std::vector<unsigned char> m_bytes;
    std::vector<std::size_t> m_rowStarts;
    // The cell found last: a row is mostly read column after column, and each cell is found
    // by stepping over the ones before it, so the next one starts from here. A row rewritten
    // elsewhere has a new start and misses. (A cache: reading stays a const operation of one
    // thread at a time, as a recordset is used.)
    struct Near {
        std::size_t row = 0, rowStart = 0, column = 0, offset = 0;
        bool valid = false;
    };
    mutable Near m_near;
};

} // namespace qr::db
