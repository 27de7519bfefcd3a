#pragma once
// The report's field collection. Unbound reports add their fields (usually in initialize) and
// fill them in fetchData; bound reports see the data control's current row here, one field per
// column. Names match without regard to case. Bound text boxes, group breaks and summaries read
// their values from here, so a handler that changes a field's value changes what prints.

#include "platform/core/rows.hpp"
#include "platform/core/variant.hpp"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qr::engine {

class Fields;
class Filler;

/// A handle to one field; stays valid while the collection keeps the field (column fields are
/// replaced when a bound run starts).
class Field {
  public:
    const std::string& name() const;
    const Variant& value() const;
    void setValue(Variant value);

  private:
    Field(Fields& owner, int index) : m_owner(&owner), m_index(index) {}
    Fields* m_owner;
    int m_index;
    friend class Fields;
};

class Fields {
  public:
    /// `reportName` names the report in error messages.
    explicit Fields(std::string reportName);

    /// Add an unbound field holding Empty; a name that exists already gives the existing field.
    Field add(std::string name);
    /// The field of that name (any letter case); raises qr::Error (9, the report's name, a
    /// description naming the field) when there is none.
    Field operator[](std::string_view name);
    Field get(std::string_view name) { return (*this)[name]; }
    bool contains(std::string_view name) const { return indexOf(name) >= 0; }
    /// Position of a field (any letter case), -1 when there is none.
    int indexOf(std::string_view name) const;
    int size() const { return static_cast<int>(m_names.size()); }
    const std::string& name(int index) const { return m_names[index]; }
    const Variant& value(int index) const { return m_current[index]; }
    /// Remove every field.
    void clear();

  private:
    // The engine's side: rows and the previous row kept for group footers.
    /// Replace the column fields with the columns of `rows` (fields added by handlers stay).
    void bindColumns(const RowCursor& rows);
    /// Forget the column fields (an unbound run).
    void unbindColumns();
    /// Start a new row: the values so far become the previous row.
    void beginRow();
    /// Read the current row of `rows` into the column fields.
    void loadRow(const RowCursor& rows);
    /// Show the previous row's values (group footers print the group that ended) or the
    /// current ones again.
    void showPrevious();
    void showCurrent();

    void setValue(int index, Variant value) { m_current[index] = std::move(value); }
    int addEntry(std::string name, bool column);
    void rebuildIndex();

    std::string m_reportName;
    std::vector<std::string> m_names;
    std::vector<bool> m_isColumn; // fed from the recordset's columns
    std::vector<bool> m_isAdded;  // added by a handler (kept when the columns change)
    // For a column field, its column's position in the rows: each row is read by position,
    // not by looking its name up again.
    std::vector<std::size_t> m_columnAt;
    std::vector<Variant> m_current;
    std::vector<Variant> m_previous;
    bool m_showingPrevious = false;
    std::unordered_map<std::string, int> m_byLowerName;

    friend class Field;
    friend class Filler;
};

} // namespace qr::engine
