#include "platform/engine/fill/filler.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/core/number_format.hpp"
#include "platform/engine/fill/fill_source.hpp"

#include <algorithm>
#include <climits>
#include <utility>

namespace qr::engine {

namespace {

// A sub-report's strip has no page bottom.
constexpr int kEndlessBottom = INT_MAX / 4;

bool sameGroupValue(const Variant& a, const Variant& b) {
    if (a.isNumeric() && b.isNumeric())
        return toDouble(a) == toDouble(b);
    return a == b;
}

bool isRunningSummary(SummaryKind kind) {
    return kind != SummaryKind::None && kind != SummaryKind::PageCount &&
           kind != SummaryKind::PageNumber;
}

/// Marks the report as running for the lifetime of a run, whatever way the run ends.
class RunGuard {
  public:
    RunGuard(bool& running, const Filler*& current, const Filler* filler)
        : m_running(running), m_current(current), m_previous(current) {
        m_running = true;
        m_current = filler;
    }
    ~RunGuard() {
        m_running = false;
        m_current = m_previous;
    }
    RunGuard(const RunGuard&) = delete;
    RunGuard& operator=(const RunGuard&) = delete;

  private:
    bool& m_running;
    const Filler*& m_current;
    const Filler* m_previous;
};

} // namespace

Filler::Filler(FillSource source, TextLayout& text)
    : m_source(std::move(source)), m_text(text),
      m_builder(text, [this](SubReport& box, Band& strip) { runSubReport(box, strip); }) {
    for (const auto& section : m_source.sections) {
        Section* s = section.get();
        switch (s->kind()) {
        case SectionKind::ReportHeader:
            m_reportHeader = s;
            break;
        case SectionKind::PageHeader:
            m_pageHeader = s;
            break;
        case SectionKind::Detail:
            m_detail = s;
            break;
        case SectionKind::PageFooter:
            m_pageFooter = s;
            break;
        case SectionKind::ReportFooter:
            m_reportFooter = s;
            break;
        case SectionKind::GroupHeader:
            m_groups.push_back(Group{s, nullptr, -1});
            break;
        case SectionKind::GroupFooter:
            for (Group& g : m_groups) {
                if (g.header->name() == s->header())
                    g.footer = s;
            }
            break;
        }
    }
}

// ---- The run --------------------------------------------------------------------------------

void Filler::runPages() {
    RunGuard guard(m_source.running, m_source.current, this);
    m_pages = &m_source.pages;
    run();
}

void Filler::runStrip(int pageNumber, Band& strip) {
    RunGuard guard(m_source.running, m_source.current, this);
    m_strip = &strip;
    m_pageNumber = pageNumber;
    run();
}

void Filler::run() {
    m_source.initializeOnce();
    m_summaries.clear();
    m_source.reportStart();
    startData();
    const bool haveRow = fetchRow(true);
    setUpGroups(haveRow);
    setUpSummaries(haveRow);

    const PageSettings& settings = m_source.page;
    if (m_pages) {
        m_pages->title = m_source.title;
        m_pages->orientation = settings.orientation;
        m_pages->marginLeft = settings.marginLeft;
        m_pages->marginTop = settings.marginTop;
        m_pages->marginRight = settings.marginRight;
        m_pages->marginBottom = settings.marginBottom;
        m_pageWidth = settings.pageWidth();
        m_pageHeight = settings.pageHeight();
        checkPageRoom();
        startPage();
    } else {
        m_paginator.beginPage(0, kEndlessBottom);
    }
    printSection(m_reportHeader);
    if (m_pages && !m_pageHeaderDone)
        printPageHeader();
    processRows(haveRow);
    printSection(m_reportFooter);
    if (m_pages) {
        finishPage();
        resolvePageCounts();
    } else {
        m_strip->height = m_paginator.cursor();
    }
    m_source.reportEnd();
}

void Filler::startData() {
    Fields& fields = m_source.fields;
    RowCursor* rows = m_source.data.recordset();
    m_bound = rows != nullptr;
    if (m_bound)
        fields.bindColumns(*rows);
    else
        fields.unbindColumns();
    resetControls();
}

void Filler::resetControls() {
    // Field positions and font indices belong to one run (the columns and the font table are
    // new each time).
    for (const auto& control : m_source.controls) {
        control->m_fontIndex = -1;
        if (control->kind() == ControlKind::TextBox) {
            auto& box = static_cast<TextBox&>(*control);
            box.m_fieldIndex = -2;
            box.m_summarySlot = -1;
        } else if (control->kind() == ControlKind::CheckBox) {
            static_cast<CheckBox&>(*control).m_fieldIndex = -2;
        }
    }
}

int Filler::resolveField(const std::string& field, bool haveRow, const std::string& user) {
    const int index = m_source.fields.indexOf(field);
    if (index < 0 && haveRow) {
        const std::string& name = m_source.className;
        throw Error(errc::kComponent, name,
                    name + ": " + user + " uses the field " + field + ", which is " +
                        (m_bound ? "not a column of the data source." : "not a report field."));
    }
    return index;
}

void Filler::setUpGroups(bool haveRow) {
    for (Group& g : m_groups) {
        const std::string& field = g.header->groupField();
        g.field = field.empty()
                      ? -1
                      : resolveField(field, haveRow, "the group header " + g.header->name());
    }
}

void Filler::setUpSummaries(bool haveRow) {
    for (const auto& control : m_source.controls) {
        if (control->kind() != ControlKind::TextBox)
            continue;
        auto& box = static_cast<TextBox&>(*control);
        const Summary& summary = box.summary();
        if (!isRunningSummary(summary.kind))
            continue;
        int group = -1;
        for (size_t g = 0; g < m_groups.size(); ++g) {
            if (m_groups[g].header->name() == summary.group)
                group = static_cast<int>(g);
        }
        const int field = resolveField(box.dataField(), haveRow, "the summary " + box.name());
        box.m_summarySlot = m_summaries.add(summary.kind, group, field, box.name());
    }
}

// ---- Rows and groups ------------------------------------------------------------------------

bool Filler::fetchRow(bool first) {
    Fields& fields = m_source.fields;
    fields.beginRow();
    ++m_source.context.rowSerial;
    if (m_bound) {
        RowCursor* rows = m_source.data.recordset();
        if (rows == nullptr)
            return false;
        if (!first)
            rows->moveNext();
        if (rows->eof())
            return false;
        fields.loadRow(*rows);
        bool eof = false; // a bound report's rows end with its recordset
        m_source.fetchData(eof);
        return true;
    }
    // An unbound report delivers a row by filling its fields; it ends the rows by setting the
    // flag, and that call delivers none.
    bool eof = false;
    m_source.fetchData(eof);
    return !eof;
}

int Filler::breakLevel() const {
    const Fields& fields = m_source.fields;
    for (size_t g = 0; g < m_groups.size(); ++g) {
        const int f = m_groups[g].field;
        if (f >= 0 && !sameGroupValue(fields.m_current[f], fields.m_previous[f]))
            return static_cast<int>(g);
    }
    return static_cast<int>(m_groups.size());
}

void Filler::printGroupHeader(size_t group) {
    m_summaries.resetGroup(static_cast<int>(group));
    printSection(m_groups[group].header);
}

void Filler::processRows(bool haveRow) {
    Fields& fields = m_source.fields;
    if (!haveRow)
        return;
    for (size_t g = 0; g < m_groups.size(); ++g)
        printGroupHeader(g);
    const int groupCount = static_cast<int>(m_groups.size());
    while (true) {
        m_summaries.accumulate(fields, m_source.className);
        printSection(m_detail);
        haveRow = fetchRow(false);
        const int level = haveRow ? breakLevel() : 0;
        if (level < groupCount || !haveRow) {
            // The footers close the groups that ended, so they show the last row of those.
            fields.showPrevious();
            for (int g = groupCount - 1; g >= level; --g)
                printSection(m_groups[g].footer);
        }
        if (!haveRow)
            break; // the report footer goes on showing the last row
        fields.showCurrent();
        for (int g = level; g < groupCount; ++g)
            printGroupHeader(static_cast<size_t>(g));
    }
}

// ---- Sections -------------------------------------------------------------------------------

void Filler::bindSection(Section& section) {
    const Fields& fields = m_source.fields;
    for (Control* control : section.controls()) {
        if (control->kind() == ControlKind::TextBox) {
            auto& box = static_cast<TextBox&>(*control);
            const SummaryKind kind = box.summary().kind;
            if (box.m_summarySlot >= 0) {
                box.bindValue(m_summaries.value(box.m_summarySlot));
            } else if (kind == SummaryKind::PageNumber) {
                box.bindValue(static_cast<std::int32_t>(m_pageNumber));
            } else if (kind == SummaryKind::None && !box.setForCurrentRow()) {
                if (box.m_fieldIndex == -2)
                    box.m_fieldIndex =
                        box.dataField().empty() ? -1 : fields.indexOf(box.dataField());
                if (box.m_fieldIndex >= 0)
                    box.bindValue(fields.value(box.m_fieldIndex));
            }
        } else if (control->kind() == ControlKind::CheckBox) {
            auto& box = static_cast<CheckBox&>(*control);
            if (box.m_setAt == m_source.context.rowSerial)
                continue;
            if (box.m_fieldIndex == -2)
                box.m_fieldIndex = box.dataField().empty() ? -1 : fields.indexOf(box.dataField());
            if (box.m_fieldIndex < 0)
                continue;
            const Variant& v = fields.value(box.m_fieldIndex);
            box.m_settings.checked = !(v.isNull() || v.isEmpty()) && toBoolean(v);
        }
    }
}

void Filler::raiseFormat(Section& section) {
    if (const auto& handler = m_source.formatHandlers[section.index()])
        handler();
}

void Filler::raiseBeforePrint(Section& section) {
    if (const auto& handler = m_source.beforePrintHandlers[section.index()])
        handler();
}

void Filler::printSection(Section* section) {
    if (section == nullptr)
        return;
    bindSection(*section);
    raiseFormat(*section);
    if (!section->visible())
        return;
    m_builder.build(*section, m_band);
    place(*section, m_band);
}

void Filler::place(Section& section, Band& band) {
    const bool paged = m_pages != nullptr;
    if (paged && m_breakPending) {
        m_breakPending = false;
        if (!m_paginator.atTop())
            newPage();
    }
    if (paged && section.newPageBefore() && !m_paginator.atTop())
        newPage();
    // Only a group footer joins the bands held back at the foot of the page; anything else
    // lets them go.
    if (section.kind() != SectionKind::GroupFooter)
        releaseHeld();
    if (section.kind() == SectionKind::Detail && section.settings().columnCount > 1) {
        placeColumns(section, band);
    } else {
        m_paginator.endColumns();
        if (paged && !m_paginator.fits(band.height)) {
            // Decide about moving the whole band before BeforePrint, so its handler runs with
            // the page the band prints on.
            m_builder.atoms(band, m_atoms);
            const Paginator::Decision d = decide(section, band);
            if (d.action == Paginator::Action::NewPage)
                newPage();
            else if (d.action == Paginator::Action::CarryOver)
                carryHeldOver();
        }
        raiseBeforePrint(section);
        m_builder.refresh(band);
        placeFlow(section, band);
    }
    if (paged && section.newPageAfter())
        m_breakPending = true;
}

Paginator::Decision Filler::decide(const Section& section, const Band& band) const {
    // A group footer takes the group's last detail line (and the footers already under it)
    // along rather than open a page alone.
    const int carry = section.kind() == SectionKind::GroupFooter && m_holding
                          ? m_paginator.cursor() - m_heldTop
                          : 0;
    return m_paginator.decide(band.height, section.keepTogether(), m_atoms, carry);
}

void Filler::placeFlow(Section& section, Band& band) {
    const int left = m_pages ? m_source.page.marginLeft : 0;
    while (true) {
        if (!m_pages || m_paginator.fits(band.height)) {
            putOnPage(section, band, band.height);
            return;
        }
        m_builder.atoms(band, m_atoms);
        const Paginator::Decision d = decide(section, band);
        switch (d.action) {
        case Paginator::Action::Place:
            putOnPage(section, band, std::min(band.height, std::max(0, m_paginator.remaining())));
            return;
        case Paginator::Action::NewPage:
            newPage();
            break;
        case Paginator::Action::CarryOver:
            carryHeldOver();
            break;
        case Paginator::Action::Split:
            releaseHeld();
            m_builder.split(band, d.cut, m_tail);
            emit(band, left, m_paginator.cursor());
            m_paginator.advance(d.cut);
            newPage();
            std::swap(band, m_tail);
            break;
        }
    }
}

void Filler::putOnPage(const Section& section, Band& band, int advance) {
    const int top = m_paginator.cursor();
    m_paginator.advance(advance);
    const bool holds = section.kind() == SectionKind::Detail ||
                       (section.kind() == SectionKind::GroupFooter && m_holding);
    if (m_pages == nullptr || !holds) {
        emit(band, m_pages ? m_source.page.marginLeft : 0, top);
        return;
    }
    // A detail line waits at the foot of the page until the next band is known: a group footer
    // that does not fit below it takes it to the next page.
    if (section.kind() == SectionKind::Detail)
        releaseHeld();
    if (!m_holding) {
        m_holding = true;
        m_heldTop = top;
    }
    BandBuilder::append(band, 0, top - m_heldTop, m_held);
    m_held.height = m_paginator.cursor() - m_heldTop;
}

void Filler::releaseHeld() {
    if (!m_holding)
        return;
    m_holding = false;
    emit(m_held, m_source.page.marginLeft, m_heldTop);
}

void Filler::carryHeldOver() {
    // The held bands leave this page unprinted and open the next one.
    m_holding = false;
    std::swap(m_held, m_carried);
    newPage();
    std::swap(m_held, m_carried);
    m_holding = true;
    m_heldTop = m_paginator.cursor();
    m_paginator.advance(m_held.height);
}

void Filler::placeColumns(Section& section, Band& band) {
    const SectionDesign& s = section.settings();
    const int printWidth = m_source.page.printWidth;
    ColumnSpec spec{s.columnCount, s.columnWidth, s.columnSpacing, s.columnDirection};
    if (spec.width <= 0)
        spec.width = (printWidth - spec.spacing * (spec.count - 1)) / spec.count;
    Paginator::Slot slot = m_paginator.columnSlot(spec, band.height);
    if (!slot.fits) {
        newPage();
        slot = m_paginator.columnSlot(spec, band.height);
    }
    raiseBeforePrint(section);
    m_builder.refresh(band);
    const int left = m_pages ? m_source.page.marginLeft : 0;
    emit(band, left + slot.x, slot.y);
}

std::string Filler::pageNumberText(int number, const std::string& pattern) const {
    if (pattern.empty())
        return std::to_string(number);
    return NumberFormat::parse(pattern).format(static_cast<double>(number));
}

void Filler::emit(Band& band, int dx, int dy) {
    if (!m_pages) {
        BandBuilder::append(band, dx, dy, *m_strip);
        return;
    }
    for (page::Item& item : band.items)
        BandBuilder::offset(item, dx, dy);
    // Page numbers are known now and go in before the items are packed onto the page; page
    // counts wait for the end of the run.
    page::ItemList& target = m_pages->pages.back().items;
    const size_t base = target.size();
    for (DeferredText& d : band.deferred) {
        if (d.kind == SummaryKind::PageNumber) {
            auto& item = std::get<page::TextItem>(band.items[static_cast<size_t>(d.item)]);
            if (m_builder.resolve(item, pageNumberText(m_pageNumber, d.pattern), d.wrap))
                recordCut(m_pageNumber, item, item.text, d.clipped);
            item.numericValue = m_pageNumber;
            item.format = d.pattern;
        } else {
            m_pageCounts.push_back(PendingCount{m_pages->pages.size() - 1,
                                                base + static_cast<size_t>(d.item),
                                                std::move(d.pattern), d.wrap, d.clipped});
        }
    }
    for (const CutMark& m : band.cuts) {
        const auto& item = std::get<page::TextItem>(band.items[static_cast<size_t>(m.item)]);
        m_pages->cutTexts.push_back(page::CutText{static_cast<int>(m_pages->pages.size()),
                                                  item.control, item.section, m.text, m.printed,
                                                  m.clipped});
    }
    for (const page::Item& item : band.items)
        target.push_back(item);
    band.clear();
}

void Filler::recordCut(int pageNumber, const page::TextItem& item, const std::string& text,
                       bool clipped) {
    m_pages->cutTexts.push_back(page::CutText{pageNumber, item.control, item.section, text,
                                              BandBuilder::printedText(item), clipped});
}

// ---- Pages ----------------------------------------------------------------------------------

void Filler::checkPageRoom() const {
    const PageSettings& s = m_source.page;
    const int header = m_pageHeader && m_pageHeader->visible() ? m_pageHeader->height() : 0;
    const int footer = m_pageFooter && m_pageFooter->visible() ? m_pageFooter->height() : 0;
    if (s.marginTop + header + footer >= m_pageHeight - s.marginBottom) {
        const std::string& name = m_source.className;
        throw Error(errc::kComponent, name,
                    name + ": the margins, page header and page footer leave no room for the "
                           "body of the page.");
    }
}

void Filler::startPage() {
    ++m_pageNumber;
    page::Page page;
    page.width = m_pageWidth;
    page.height = m_pageHeight;
    page.items.reserve(m_itemsPerPage);
    m_pages->pages.push_back(std::move(page));
    const PageSettings& s = m_source.page;
    const int footer = m_pageFooter && m_pageFooter->visible() ? m_pageFooter->height() : 0;
    m_paginator.beginPage(s.marginTop, m_pageHeight - s.marginBottom - footer);
    m_pageHeaderDone = false;
}

void Filler::newPage() {
    finishPage();
    startPage();
    printPageHeader();
}

void Filler::printPageHeader() {
    m_pageHeaderDone = true;
    if (m_pageHeader == nullptr)
        return;
    bindSection(*m_pageHeader);
    raiseFormat(*m_pageHeader);
    if (!m_pageHeader->visible())
        return;
    m_builder.build(*m_pageHeader, m_pageBand);
    raiseBeforePrint(*m_pageHeader);
    m_builder.refresh(m_pageBand);
    const int height = m_pageBand.height;
    const bool freshPage = m_paginator.atTop();
    emit(m_pageBand, m_source.page.marginLeft, m_paginator.cursor());
    // On a fresh page the body starts under the header: a band standing there is at the top
    // of the page. (On the first page the report header stands above it.)
    if (freshPage)
        m_paginator.beginPage(m_paginator.cursor() + height, m_paginator.bottom());
    else
        m_paginator.advance(height);
}

void Filler::finishPage() {
    releaseHeld();
    if (m_pageFooter != nullptr) {
        bindSection(*m_pageFooter);
        raiseFormat(*m_pageFooter);
        if (m_pageFooter->visible()) {
            m_builder.build(*m_pageFooter, m_pageBand);
            raiseBeforePrint(*m_pageFooter);
            m_builder.refresh(m_pageBand);
            const PageSettings& s = m_source.page;
            emit(m_pageBand, s.marginLeft, m_pageHeight - s.marginBottom - m_pageBand.height);
        }
    }
    page::ItemList& items = m_pages->pages.back().items;
    m_itemsPerPage = std::max(m_itemsPerPage, items.size());
    // The page is complete: give back what the reservation and growth left unused, since a
    // long report keeps every page until its end.
    items.shrinkToFit();
}

void Filler::resolvePageCounts() {
    const int total = static_cast<int>(m_pages->pages.size());
    page::Item scratch;
    for (PendingCount& pending : m_pageCounts) {
        page::ItemList& items = m_pages->pages[pending.page].items;
        items.decodeInto(pending.item, scratch);
        auto& item = std::get<page::TextItem>(scratch);
        if (m_builder.resolve(item, pageNumberText(total, pending.pattern), pending.wrap))
            recordCut(static_cast<int>(pending.page) + 1, item, item.text, pending.clipped);
        item.numericValue = total;
        item.format = pending.pattern;
        items.set(pending.item, scratch);
    }
    m_pageCounts.clear();
}

// ---- Sub-reports ----------------------------------------------------------------------------

void Filler::runSubReport(SubReport& box, Band& strip) {
    m_source.runSubReport(box, m_text, m_pageNumber, strip);
}

} // namespace qr::engine
