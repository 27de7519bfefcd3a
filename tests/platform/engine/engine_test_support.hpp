#pragma once
// What the engine tests share: a measurer with round numbers (so positions can be worked out by
// hand), an in-memory row source with the recordset operations, and helpers to pick items out
// of pages.

#include "platform/core/error.hpp"
#include "platform/core/rows.hpp"
#include "platform/engine/page/page.hpp"
#include "platform/engine/page/text_measurer.hpp"

#include <algorithm>
#include <cctype>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace qr::engine::test {

/// Every character is 100 twips wide at 10 points (scaled with the size); a line is 240 twips
/// high, its baseline 180 below its top. Counts the strings it is asked to measure.
class FixedMeasurer : public page::TextMeasurer {
  public:
    int width(const page::FontSpec& font, std::string_view text) override {
        ++calls;
        int characters = 0;
        for (char c : text) {
            if ((static_cast<unsigned char>(c) & 0xC0) != 0x80)
                ++characters;
        }
        return static_cast<int>(characters * 10.0 * font.sizePoints);
    }
    page::FontMetrics metrics(const page::FontSpec& font) override {
        const double scale = font.sizePoints / 10.0;
        return {static_cast<int>(180 * scale), static_cast<int>(60 * scale),
                static_cast<int>(240 * scale)};
    }
    long calls = 0;
};

/// A table of rows held in memory.
struct Table {
    std::vector<std::string> columns;
    std::vector<std::vector<Variant>> rows;
};

class MemoryCursor : public RowCursor {
  public:
    explicit MemoryCursor(Table table) : m_table(std::move(table)) {}
    bool eof() const override { return m_row >= m_table.rows.size(); }
    void moveNext() override { ++m_row; }
    long recordCount() const override { return static_cast<long>(m_table.rows.size()); }
    const std::vector<std::string>& columns() const override { return m_table.columns; }
    bool hasColumn(std::string_view name) const override { return columnIndex(name) >= 0; }
    Variant value(std::string_view name) const override {
        const int column = columnIndex(name);
        if (column < 0 || eof())
            throw Error::subscriptOutOfRange("MemoryCursor");
        return m_table.rows[m_row][column];
    }
    void close() override { m_row = m_table.rows.size(); }

  private:
    int columnIndex(std::string_view name) const {
        auto same = [](std::string_view a, std::string_view b) {
            return a.size() == b.size() &&
                   std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
                       return std::tolower(static_cast<unsigned char>(x)) ==
                              std::tolower(static_cast<unsigned char>(y));
                   });
        };
        for (size_t i = 0; i < m_table.columns.size(); ++i) {
            if (same(m_table.columns[i], name))
                return static_cast<int>(i);
        }
        return -1;
    }
    Table m_table;
    size_t m_row = 0;
};

/// Sources are looked up by their exact text; each open takes a snapshot of the table as it
/// stands then, so a later change shows only after a new open.
class MemoryRows : public RowProvider {
  public:
    std::map<std::string, Table> tables;
    int opens = 0;
    CursorType lastCursor = CursorType::Unspecified;
    LockType lastLock = LockType::Unspecified;

    std::unique_ptr<RowCursor> openRows(const std::string& source, CursorType cursor,
                                        LockType lock) override {
        auto it = tables.find(source);
        if (it == tables.end())
            throw Error(errc::kComponent, "MemoryRows", "no table for source " + source);
        ++opens;
        lastCursor = cursor;
        lastLock = lock;
        return std::make_unique<MemoryCursor>(it->second);
    }
    std::string describe() const override { return "memory"; }
};

/// Copies of the text items of a page printed by one control, in drawing order.
inline std::vector<page::TextItem> textsOf(const page::Page& page, const std::string& control) {
    std::vector<page::TextItem> found;
    for (const page::Item& item : page.items) {
        if (const auto* t = std::get_if<page::TextItem>(&item); t && t->control == control)
            found.push_back(*t);
    }
    return found;
}

inline std::vector<std::string> textValues(const page::Pages& pages, const std::string& control) {
    std::vector<std::string> values;
    for (const page::Page& page : pages.pages) {
        for (const page::TextItem& t : textsOf(page, control))
            values.push_back(t.text);
    }
    return values;
}

/// The sequence of "section/control=text" for every text item of the pages, for order tests.
inline std::vector<std::string> textSequence(const page::Pages& pages) {
    std::vector<std::string> sequence;
    for (const page::Page& page : pages.pages) {
        for (const page::Item& item : page.items) {
            if (const auto* t = std::get_if<page::TextItem>(&item))
                sequence.push_back(t->section + "/" + t->control + "=" + t->text);
        }
    }
    return sequence;
}

} // namespace qr::engine::test

#include "platform/engine/report.hpp"

#include <functional>

namespace qr::engine::test {

/// A Letter page with half-inch margins and a 7.5-inch print width, and the given sections.
inline ReportDesign designOf(std::string name, std::vector<SectionDesign> sections) {
    ReportDesign d;
    d.name = std::move(name);
    d.title = "Test";
    d.page.marginLeft = d.page.marginRight = d.page.marginTop = d.page.marginBottom = 720;
    d.page.printWidth = 10800;
    d.sections = std::move(sections);
    return d;
}

/// An unbound report over rows held in a list: initialize adds the fields, fetchData delivers
/// one row per call. Tests hook handlers onto it and can log the report-level events.
class ListReport : public Report {
  public:
    ListReport(ReportDesign design, std::vector<std::string> fieldNames,
               std::vector<std::vector<Variant>> rows)
        : Report(std::move(design)), m_names(std::move(fieldNames)), m_rows(std::move(rows)) {
        setTextMeasurer(std::make_shared<FixedMeasurer>());
    }

    using Report::onBeforePrint;
    using Report::onFormat;

    std::vector<std::string> log;
    std::function<void()> atStart;
    std::function<void()> atEnd;
    std::vector<std::vector<Variant>>& rows() { return m_rows; }

  protected:
    void initialize() override {
        log.push_back("initialize");
        for (const std::string& name : m_names)
            fields().add(name);
    }
    void reportStart() override {
        log.push_back("reportStart");
        m_next = 0;
        if (atStart)
            atStart();
    }
    void fetchData(bool& eof) override {
        if (m_next >= m_rows.size()) {
            log.push_back("fetch eof");
            eof = true;
            return;
        }
        // Filling the fields delivers the row; the flag is left as it came.
        for (size_t i = 0; i < m_names.size(); ++i)
            fields()[m_names[i]].setValue(m_rows[m_next][i]);
        ++m_next;
        log.push_back("fetch " + std::to_string(m_next));
    }
    void reportEnd() override {
        log.push_back("reportEnd");
        if (atEnd)
            atEnd();
    }

  private:
    std::vector<std::string> m_names;
    std::vector<std::vector<Variant>> m_rows;
    size_t m_next = 0;
};

/// Log "<section>.format" and "<section>.print" for every section of `report`.
inline void logSections(ListReport& report, const std::vector<std::string>& sections) {
    for (const std::string& name : sections) {
        report.onFormat(name, [&report, name] { report.log.push_back(name + ".format"); });
        report.onBeforePrint(name, [&report, name] { report.log.push_back(name + ".print"); });
    }
}

} // namespace qr::engine::test
