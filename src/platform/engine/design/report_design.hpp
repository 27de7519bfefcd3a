#pragma once
// The design of a banded report: page settings, sections from top to bottom and the controls of
// each section, as plain data. A report's .cpp builds its design as a table near the top with
// the helpers below (`label`, `textBox`, `section`, ...); the engine checks it once, when the
// report object is built, and refuses a design that cannot run (see checkDesign).
//
// Coordinates are twips (1/1440 inch). Control positions are relative to the top-left corner of
// their section's band, which starts at the left margin (or at the left of its column in a
// multi-column detail).

#include "platform/engine/page/page.hpp"

#include <optional>
#include <string>
#include <vector>

namespace qr::engine {

enum class SectionKind {
    ReportHeader,
    PageHeader,
    GroupHeader,
    Detail,
    GroupFooter,
    PageFooter,
    ReportFooter,
};

/// Display name of a section kind ("report header", "group footer", ...), for messages.
const char* sectionKindName(SectionKind kind);

enum class ControlKind { Label, TextBox, CheckBox, Line, Shape, SubReport };

/// Display name of a control kind ("label", "text box", ...), for messages.
const char* controlKindName(ControlKind kind);

/// What a summary text box shows instead of its row value.
enum class SummaryKind {
    None,
    Sum,        ///< sum of the bound field over the group (or the whole report)
    Average,    ///< average of the non-Null values of the bound field
    Count,      ///< number of non-Null values of the bound field
    Minimum,    ///< smallest value of the bound field
    Maximum,    ///< largest value of the bound field
    PageCount,  ///< total number of pages of the run, known when the run finishes
    PageNumber, ///< number of the page the box is printed on
};

/// Summary settings of a text box. `group` names the group header whose groups the summary
/// runs over (a subtotal, reset when that group starts); empty means the whole report (a grand
/// total). Ignored for the page kinds.
struct Summary {
    SummaryKind kind = SummaryKind::None;
    std::string group;
};

/// Order in which the labels of a multi-column detail fill a page.
enum class ColumnDirection {
    DownThenAcross = 0, ///< fill the first column top to bottom, then the next
    AcrossThenDown = 1, ///< fill a row of labels left to right, then the next row
};

enum class ShapeStyle { Rectangle, RoundRectangle };

/// One control as designed. Which members apply depends on `kind`:
/// - Label: caption.
/// - TextBox: caption (the text shown while unbound), dataField, outputFormat, summary.
/// - CheckBox: caption (printed right of the square), dataField, checked.
/// - Line: from (rect.x, rect.y) to (rect.x + rect.width, rect.y + rect.height); width or
///   height may be negative (a rising line).
/// - Shape: rect, lineColor, fill, style.
/// - SubReport: rect; the report it runs is set at run time.
struct ControlDesign {
    ControlKind kind = ControlKind::Label;
    std::string name;
    page::Rect rect;
    std::string caption;
    std::string dataField;
    std::string outputFormat;
    Summary summary;
    page::Align align = page::Align::Left;
    page::FontSpec font;
    page::Color color = page::kBlack;
    std::optional<page::Color> background;
    bool canGrow = false;
    bool wordWrap = true;
    /// The box is meant to cut what does not fit (a fixed one-line box): its cut texts are
    /// listed as such, not as faults of the layout.
    bool clips = false;
    bool visible = true;
    bool checked = false;
    int lineWeight = 15;
    ShapeStyle style = ShapeStyle::Rectangle;

    // Fluent setters, so a design table reads as one expression per control.
    ControlDesign& field(std::string column);
    ControlDesign& format(std::string pattern);
    ControlDesign& alignRight();
    ControlDesign& alignCenter();
    ControlDesign& withFont(page::FontSpec spec);
    ControlDesign& bold();
    ControlDesign& size(double points);
    ControlDesign& grow();
    ControlDesign& noWrap();
    ControlDesign& clipped();
    ControlDesign& hidden();
    ControlDesign& sum(std::string overGroup = {});
    ControlDesign& average(std::string overGroup = {});
    ControlDesign& count(std::string overGroup = {});
    ControlDesign& minimum(std::string overGroup = {});
    ControlDesign& maximum(std::string overGroup = {});
    ControlDesign& pageCount();
    ControlDesign& pageNumber();
    ControlDesign& fill(page::Color rgb);
    ControlDesign& weight(int twips);
};

/// One section as designed, with its controls in drawing order.
struct SectionDesign {
    SectionKind kind = SectionKind::Detail;
    std::string name;
    int height = 0;
    bool canGrow = true;
    bool visible = true;
    bool keepTogether = false;
    bool newPageBefore = false;
    bool newPageAfter = false;
    /// Group headers: the field whose change starts a new group; empty means one group over
    /// the whole report (printed once before the first detail).
    std::string groupField;
    /// Group footers: the name of the group header the footer closes.
    std::string header;
    /// Detail only: labels across the print width (label sheets).
    int columnCount = 1;
    ColumnDirection columnDirection = ColumnDirection::AcrossThenDown;
    int columnWidth = 0;   ///< 0: the print width shared out evenly
    int columnSpacing = 0; ///< gap between columns
    std::vector<ControlDesign> controls;

    SectionDesign& keepTogetherOnPage();
    SectionDesign& pageBreakBefore();
    SectionDesign& pageBreakAfter();
    SectionDesign& fixedHeight();
    SectionDesign& hidden();
    SectionDesign& columns(int count, ColumnDirection direction, int width = 0, int spacing = 0);
};

/// Paper, orientation, margins and print width. Paper sizes are given portrait; landscape
/// swaps them.
struct PageSettings {
    int paperWidth = page::kLetterWidth;
    int paperHeight = page::kLetterHeight;
    page::Orientation orientation = page::Orientation::Portrait;
    int marginLeft = 1440;
    int marginTop = 1440;
    int marginRight = 1440;
    int marginBottom = 1440;
    int printWidth = page::kLetterWidth - 2 * 1440;

    /// Paper width and height after orientation.
    int pageWidth() const;
    int pageHeight() const;
};

/// A whole report design. `name` is the report's class name ("FinalGlassAR"), `title` the
/// document title that the page collection carries ("Job Glass Report").
struct ReportDesign {
    std::string name;
    std::string title;
    PageSettings page;
    std::vector<SectionDesign> sections;
};

// ---- Builders for design tables ------------------------------------------------------------

ControlDesign label(std::string name, page::Rect rect, std::string caption);
ControlDesign textBox(std::string name, page::Rect rect, std::string dataField = {});
ControlDesign checkBox(std::string name, page::Rect rect, std::string dataField = {});
ControlDesign line(std::string name, int x1, int y1, int x2, int y2);
ControlDesign shape(std::string name, page::Rect rect, ShapeStyle style = ShapeStyle::Rectangle);
ControlDesign subReport(std::string name, page::Rect rect);

SectionDesign reportHeader(std::string name, int height, std::vector<ControlDesign> controls);
SectionDesign pageHeader(std::string name, int height, std::vector<ControlDesign> controls);
/// A group header; `groupField` empty gives one group over the whole report.
SectionDesign groupHeader(std::string name, std::string groupField, int height,
                          std::vector<ControlDesign> controls);
SectionDesign detail(std::string name, int height, std::vector<ControlDesign> controls);
/// A group footer closing the group header named `header`.
SectionDesign groupFooter(std::string name, std::string header, int height,
                          std::vector<ControlDesign> controls);
SectionDesign pageFooter(std::string name, int height, std::vector<ControlDesign> controls);
SectionDesign reportFooter(std::string name, int height, std::vector<ControlDesign> controls);

/// Check a design; raises qr::Error (999, "ReportDesign", a description naming the report and
/// the section or control) on the first fault found: missing or repeated names, sections out
/// of order or repeated, no detail, a group footer without its header or closing groups out of
/// nesting order, a summary over a group that does not exist, a summary on something other
/// than a text box or without a field, a bound field on a control that cannot show one, a
/// control outside the print width (or its column) or below its section, an output format that
/// does not parse, margins and print width wider than the paper.
void checkDesign(const ReportDesign& design);

} // namespace qr::engine
