#pragma once
// One run of a report: raises the events in their order, reads the rows, breaks groups,
// computes summaries, lays out and paginates the bands, resolves page numbers and lists the
// texts cut to their boxes. A group footer is never left to open a page alone: the group's last
// detail line goes with it. A report runs on pages (run()) or, as a sub-report, into one strip
// that becomes part of its parent's section.

#include "platform/engine/fill/band.hpp"
#include "platform/engine/fill/band_builder.hpp"
#include "platform/engine/fill/fill_source.hpp"
#include "platform/engine/fill/paginator.hpp"
#include "platform/engine/fill/summaries.hpp"
#include "platform/engine/fill/text_layout.hpp"

#include <functional>
#include <string>
#include <vector>

namespace qr::engine {

class Filler {
  public:
    /// Fills the report `source` gives, laying text out with `text` (whose font table is the
    /// page collection the items will belong to).
    Filler(FillSource source, TextLayout& text);
    Filler(const Filler&) = delete;
    Filler& operator=(const Filler&) = delete;

    /// Run onto pages: the report's page collection.
    void runPages();
    /// Run as a sub-report into `strip` (items relative to the strip's top-left corner, its
    /// height the height used), while the parent is on page `pageNumber`. Page headers and
    /// footers of a sub-report do not print.
    void runStrip(int pageNumber, Band& strip);

    /// The page being filled (the parent's page for a sub-report).
    int pageNumber() const { return m_pageNumber; }

  private:
    struct Group {
        Section* header = nullptr;
        Section* footer = nullptr;
        int field = -1;
    };
    struct PendingCount {
        size_t page = 0;
        size_t item = 0;
        std::string pattern;
        bool wrap = false;
        bool clipped = false;
    };

    void run();
    void startData();
    void resetControls();
    void setUpGroups(bool haveRow);
    void setUpSummaries(bool haveRow);
    int resolveField(const std::string& field, bool haveRow, const std::string& user);
    bool fetchRow(bool first);
    int breakLevel() const;
    void processRows(bool haveRow);
    void printGroupHeader(size_t group);

    void printSection(Section* section);
    void bindSection(Section& section);
    void raiseFormat(Section& section);
    void raiseBeforePrint(Section& section);
    void place(Section& section, Band& band);
    /// Where the band goes; a group footer may carry the bands held before it.
    Paginator::Decision decide(const Section& section, const Band& band) const;
    void placeFlow(Section& section, Band& band);
    /// Put the band at the cursor and move the cursor by `advance`: printed at once, or held
    /// back when it is a detail line or a group footer under one.
    void putOnPage(const Section& section, Band& band, int advance);
    /// Print the held bands where they stand.
    void releaseHeld();
    /// Start a new page with the held bands at its top.
    void carryHeldOver();
    void placeColumns(Section& section, Band& band);
    void emit(Band& band, int dx, int dy);
    /// List a text cut to its box on page `pageNumber`.
    void recordCut(int pageNumber, const page::TextItem& item, const std::string& text,
                   bool clipped);
    std::string pageNumberText(int number, const std::string& pattern) const;

    void checkPageRoom() const;
    void startPage();
    void newPage();
    void printPageHeader();
    void finishPage();
    void resolvePageCounts();

    void runSubReport(SubReport& box, Band& strip);

    FillSource m_source;
    TextLayout& m_text;
    BandBuilder m_builder;
    Paginator m_paginator;
    Summaries m_summaries;

    page::Pages* m_pages = nullptr; // page mode
    Band* m_strip = nullptr;        // strip mode

    Section* m_reportHeader = nullptr;
    Section* m_pageHeader = nullptr;
    Section* m_detail = nullptr;
    Section* m_pageFooter = nullptr;
    Section* m_reportFooter = nullptr;
    std::vector<Group> m_groups;

    Band m_band;
    Band m_tail;
    // The last detail line and the group footers placed under it, their space taken on the
    // page but not yet printed, so a footer that does not fit can take them to the next page.
    Band m_held;
    Band m_carried;
    int m_heldTop = 0;
    bool m_holding = false;
    Band m_pageBand;
    std::vector<Atom> m_atoms;
    std::vector<PendingCount> m_pageCounts;

    bool m_bound = false;
    bool m_pageHeaderDone = false;
    bool m_breakPending = false;
    int m_pageNumber = 0;
    int m_pageWidth = 0;
    int m_pageHeight = 0;
    size_t m_itemsPerPage = 0;
};

} // namespace qr::engine
