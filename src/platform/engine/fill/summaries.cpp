#include "platform/engine/fill/summaries.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/engine/fields.hpp"

#include <algorithm>

namespace qr::engine {

int Summaries::add(SummaryKind kind, int group, int field, std::string name) {
    Entry e;
    e.kind = kind;
    e.group = group;
    e.field = field;
    e.name = std::move(name);
    m_entries.push_back(std::move(e));
    return static_cast<int>(m_entries.size() - 1);
}

void Summaries::reset(Entry& e) {
    e.sum = 0;
    e.count = 0;
    e.minimum = 0;
    e.maximum = 0;
}

void Summaries::resetGroup(int group) {
    for (Entry& e : m_entries) {
        if (e.group == group)
            reset(e);
    }
}

void Summaries::accumulate(const Fields& fields, const std::string& reportName) {
    for (Entry& e : m_entries) {
        if (e.field < 0)
            continue;
        const Variant& v = fields.value(e.field);
        if (v.isNull() || v.isEmpty())
            continue;
        double x = 0;
        try {
            x = toDouble(v);
        } catch (const Error& error) {
            throw Error(error.number(), reportName,
                        reportName + ": " + e.name + " summarises " + fields.name(e.field) +
                            ", whose value is not a number (" + error.description() + ").");
        }
        e.minimum = e.count == 0 ? x : std::min(e.minimum, x);
        e.maximum = e.count == 0 ? x : std::max(e.maximum, x);
        e.sum += x;
        ++e.count;
    }
}

Variant Summaries::value(int slot) const {
    const Entry& e = m_entries[slot];
    switch (e.kind) {
    case SummaryKind::Average:
        return e.count == 0 ? 0.0 : e.sum / static_cast<double>(e.count);
    case SummaryKind::Count:
        return static_cast<std::int32_t>(e.count);
    case SummaryKind::Minimum:
        return e.count == 0 ? Variant::null() : Variant(e.minimum);
    case SummaryKind::Maximum:
        return e.count == 0 ? Variant::null() : Variant(e.maximum);
    default:
        return e.sum;
    }
}

} // namespace qr::engine
