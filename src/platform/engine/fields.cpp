#include "platform/engine/fields.hpp"

#include "platform/core/error.hpp"
#include "platform/core/text.hpp"

#include <algorithm>
#include <cctype>

namespace qr::engine {

const std::string& Field::name() const {
    return m_owner->m_names[m_index];
}
const Variant& Field::value() const {
    return m_owner->m_current[m_index];
}
void Field::setValue(Variant value) {
    m_owner->setValue(m_index, std::move(value));
}

Fields::Fields(std::string reportName) : m_reportName(std::move(reportName)) {}

Field Fields::add(std::string name) {
    const int existing = indexOf(name);
    if (existing >= 0)
        return Field(*this, existing);
    return Field(*this, addEntry(std::move(name), false));
}

Field Fields::operator[](std::string_view name) {
    const int index = indexOf(name);
    if (index < 0)
        throw Error(errc::kSubscriptOutOfRange, m_reportName,
                    m_reportName + " has no field named " + std::string(name) + ".");
    return Field(*this, index);
}

int Fields::indexOf(std::string_view name) const {
    auto it = m_byLowerName.find(lowerCase(name));
    return it == m_byLowerName.end() ? -1 : it->second;
}

void Fields::clear() {
    m_names.clear();
    m_isColumn.clear();
    m_isAdded.clear();
    m_columnAt.clear();
    m_current.clear();
    m_previous.clear();
    m_byLowerName.clear();
    m_showingPrevious = false;
}

int Fields::addEntry(std::string name, bool column) {
    const int index = static_cast<int>(m_names.size());
    m_byLowerName.emplace(lowerCase(name), index);
    m_names.push_back(std::move(name));
    m_isColumn.push_back(column);
    m_isAdded.push_back(!column);
    m_columnAt.push_back(0);
    m_current.emplace_back();
    m_previous.emplace_back();
    return index;
}

void Fields::rebuildIndex() {
    m_byLowerName.clear();
    for (int i = 0; i < size(); ++i)
        m_byLowerName.emplace(lowerCase(m_names[i]), i);
}

void Fields::unbindColumns() {
    showCurrent();
    size_t kept = 0;
    for (size_t i = 0; i < m_names.size(); ++i) {
        if (!m_isAdded[i])
            continue;
        if (kept != i) {
            m_names[kept] = std::move(m_names[i]);
            m_current[kept] = std::move(m_current[i]);
        }
        m_isColumn[kept] = false;
        m_isAdded[kept] = true;
        ++kept;
    }
    m_names.resize(kept);
    m_isColumn.resize(kept);
    m_isAdded.resize(kept);
    m_columnAt.resize(kept);
    m_current.resize(kept);
    m_previous.assign(kept, Variant());
    rebuildIndex();
}

void Fields::bindColumns(const RowCursor& rows) {
    unbindColumns();
    const std::vector<std::string>& columns = rows.columns();
    for (std::size_t position = 0; position < columns.size(); ++position) {
        const int existing = indexOf(columns[position]);
        if (existing >= 0) {
            // A column of the same name as a handler's field feeds that field; of two columns
            // of one name, the first does.
            if (!m_isColumn[existing]) {
                m_isColumn[existing] = true;
                m_columnAt[existing] = position;
            }
            continue;
        }
        m_columnAt[addEntry(columns[position], true)] = position;
    }
}

void Fields::beginRow() {
    showCurrent();
    m_previous = m_current;
}

void Fields::loadRow(const RowCursor& rows) {
    for (size_t i = 0; i < m_names.size(); ++i) {
        if (m_isColumn[i])
            m_current[i] = rows.valueAt(m_columnAt[i]);
    }
}

void Fields::showPrevious() {
    if (m_showingPrevious)
        return;
    m_current.swap(m_previous);
    m_showingPrevious = true;
}

void Fields::showCurrent() {
    if (!m_showingPrevious)
        return;
    m_current.swap(m_previous);
    m_showingPrevious = false;
}

} // namespace qr::engine
