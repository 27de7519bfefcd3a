#pragma once
// What the parts and metal reports share in their designs and headings: the heading block
// (title, date and time, the firm, and captioned lines such as "Vendor:" and "Job  Name:"), a
// line of columns with their captions stacked above them, and the heading's texts from the
// host's report data.

#include "platform/core/error.hpp"
#include "platform/engine/design/report_design.hpp"
#include "platform/engine/report.hpp"
#include "platform/host/report_data.hpp"
#include "reports/common/design_helpers.hpp"
#include "reports/common/heading.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace qr::reports::parts {

/// Text sizes, in points: heading lines and the report's lines.
inline constexpr double kHeadingTextSize = 9;
inline constexpr double kLineTextSize = 8;
inline constexpr int kLineHeight = 230;

/// A captioned line of the heading block: "Vendor:" and the label that shows the vendor.
struct HeadingLine {
    const char* caption;
    const char* valueLabel;
};

/// The heading block of one design. The firm's name (lGlassfirm) stands under the title, the
/// user's name (lUserName) under it when the design has one; the captioned lines follow in two
/// columns.
struct HeadingBlock {
    const char* title;
    int width; ///< print width
    bool userName = false;
    std::vector<HeadingLine> left;
    std::vector<HeadingLine> right;
    /// A label right under the title (a note on the pricing), when the design has one.
    const char* subheading = nullptr;
    const char* subheadingText = "";
    /// Whether the subheading shows before a handler says so.
    bool subheadingShown = true;
};

/// Adds the block's controls (the title as Label1 and the captions numbered on from there by
/// `captions`, RptDate and RptTime at the right) and returns the height it takes.
int addHeadingBlock(std::vector<engine::ControlDesign>& controls, const HeadingBlock& block,
                    CaptionMaker& captions);

/// One column of a report's line: the control that prints it and the caption above it.
struct Column {
    std::string control;
    std::string field; ///< the bound field; empty for a label a handler fills
    std::string format;
    int x = 0;
    int width = 0;
    page::Align align = page::Align::Left;
    /// Caption lines from top to bottom, bottom-aligned with the other columns' captions.
    std::vector<std::string> captions;
    /// A caption that a handler changes has a name of its own: one label holding the lines
    /// (joined by blanks, wrapped in the column's width). Otherwise each line is a numbered
    /// static caption.
    std::string captionName = {};
    /// Rows the caption takes (0: one per line); a long one-line caption may wrap into two.
    int captionRows = 0;
    /// The line grows to show all of a long text (descriptions) instead of clipping it.
    bool grows = false;
};

/// `column` growing with its text.
Column growing(Column column);

/// Rows of the captions above the columns (the tallest caption has this many lines).
inline constexpr int kCaptionRows = 2;
inline constexpr int kCaptionRowHeight = 200;

/// Adds the captions of `columns` with their bottom row ending at `top` + the caption rows.
void addColumnCaptions(std::vector<engine::ControlDesign>& controls,
                       const std::vector<Column>& columns, int top, CaptionMaker& captions);

/// The detail section "Detail" printing `columns`, one line high.
engine::SectionDesign lineOf(const std::vector<Column>& columns);

/// The page footer every parts report has (txtPageNumber), with a rule above it where the
/// design has one (`rule`, e.g. "Line2").
engine::SectionDesign partsPageFooter(int width, const char* rule = nullptr);

/// Names of a design's heading labels; nullptr where it has none.
struct HeadingLabels {
    const char* user = nullptr;
    const char* email = nullptr;
    const char* fax = "lFax";
    const char* finish = nullptr;
};

/// Fills the heading labels from the report data: the firm (lGlassfirm), the phone (lPhone:
/// the user's, or the firm's when the user's is empty), the job (lJobName), the vendor
/// (lVendor), and those of `labels`; then RptDate and RptTime.
void showPartsHeading(engine::Report& report, const host::PartsReportHeading& data,
                      const HeadingLabels& labels);

/// The report data a handler reads. A report run without any (as a request runs it) raises
/// "Object variable or With block variable not set", naming the report.
template <class Data> const Data& reportData(const engine::Report& report, const Data* data) {
    if (data == nullptr)
        throw Error::objectNotSet(report.className());
    return *data;
}

/// Row delivery over a host list: the item at `rowIndex`, which then counts it as delivered;
/// nullptr, with `eof` set, when every item has been delivered.
template <class Item>
const Item* nextRow(const std::vector<Item>& items, std::int32_t& rowIndex, bool& eof) {
    eof = rowIndex >= static_cast<std::int64_t>(items.size());
    if (eof)
        return nullptr;
    return &items[static_cast<std::size_t>(rowIndex++)];
}

} // namespace qr::reports::parts
