#pragma once
// The engine's summaries: sums, averages, counts, minimums and maximums of a field, over the
// groups of a group header (reset when a new group starts) or over the whole report.

#include "platform/core/variant.hpp"
#include "platform/engine/design/report_design.hpp"

#include <string>
#include <vector>

namespace qr::engine {

class Fields;

class Summaries {
  public:
    /// Forget every summary (a new run).
    void clear() { m_entries.clear(); }
    /// Add a summary of `kind` over the field at `field` (-1: none, stays empty), reset with
    /// group `group` (-1: the whole report). `name` names the box in errors. Returns its slot.
    int add(SummaryKind kind, int group, int field, std::string name);
    /// A new group of `group` starts: its summaries start again.
    void resetGroup(int group);
    /// Add the current row's values. Null and Empty values are skipped; a value that is not a
    /// number raises qr::Error (Type mismatch) naming `reportName` and the box.
    void accumulate(const Fields& fields, const std::string& reportName);
    /// What the summary in `slot` shows now: Sum as Double (0 without rows), Average as Double
    /// (0 without values), Count as Long, Minimum and Maximum as Double (Null without values).
    Variant value(int slot) const;

  private:
    struct Entry {
        SummaryKind kind = SummaryKind::Sum;
        int group = -1;
        int field = -1;
        std::string name;
        double sum = 0;
        long count = 0;
        double minimum = 0;
        double maximum = 0;
    };
    static void reset(Entry& e);

    std::vector<Entry> m_entries;
};

} // namespace qr::engine
