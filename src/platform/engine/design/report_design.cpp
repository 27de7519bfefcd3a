#include "platform/engine/design/report_design.hpp"

#include "platform/core/error.hpp"
#include "platform/core/number_format.hpp"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <utility>

namespace qr::engine {

const char* sectionKindName(SectionKind kind) {
    switch (kind) {
    case SectionKind::ReportHeader:
        return "report header";
    case SectionKind::PageHeader:
        return "page header";
    case SectionKind::GroupHeader:
        return "group header";
    case SectionKind::Detail:
        return "detail";
    case SectionKind::GroupFooter:
        return "group footer";
    case SectionKind::PageFooter:
        return "page footer";
    case SectionKind::ReportFooter:
        return "report footer";
    }
    return "section";
}

const char* controlKindName(ControlKind kind) {
    switch (kind) {
    case ControlKind::Label:
        return "label";
    case ControlKind::TextBox:
        return "text box";
    case ControlKind::CheckBox:
        return "check box";
    case ControlKind::Line:
        return "line";
    case ControlKind::Shape:
        return "shape";
    case ControlKind::SubReport:
        return "sub-report";
    }
    return "control";
}

// ---- Fluent setters -------------------------------------------------------------------------

ControlDesign& ControlDesign::field(std::string column) {
    dataField = std::move(column);
    return *this;
}
ControlDesign& ControlDesign::format(std::string pattern) {
    outputFormat = std::move(pattern);
    return *this;
}
ControlDesign& ControlDesign::alignRight() {
    align = page::Align::Right;
    return *this;
}
ControlDesign& ControlDesign::alignCenter() {
    align = page::Align::Center;
    return *this;
}
ControlDesign& ControlDesign::withFont(page::FontSpec spec) {
    font = std::move(spec);
    return *this;
}
ControlDesign& ControlDesign::bold() {
    font.bold = true;
    return *this;
}
ControlDesign& ControlDesign::size(double points) {
    font.sizePoints = points;
    return *this;
}
ControlDesign& ControlDesign::grow() {
    canGrow = true;
    return *this;
}
ControlDesign& ControlDesign::noWrap() {
    wordWrap = false;
    return *this;
}
ControlDesign& ControlDesign::clipped() {
    clips = true;
    return *this;
}
ControlDesign& ControlDesign::hidden() {
    visible = false;
    return *this;
}

namespace {
ControlDesign& setSummary(ControlDesign& c, SummaryKind kind, std::string group) {
    c.summary = Summary{kind, std::move(group)};
    return c;
}
} // namespace

ControlDesign& ControlDesign::sum(std::string overGroup) {
    return setSummary(*this, SummaryKind::Sum, std::move(overGroup));
}
ControlDesign& ControlDesign::average(std::string overGroup) {
    return setSummary(*this, SummaryKind::Average, std::move(overGroup));
}
ControlDesign& ControlDesign::count(std::string overGroup) {
    return setSummary(*this, SummaryKind::Count, std::move(overGroup));
}
ControlDesign& ControlDesign::minimum(std::string overGroup) {
    return setSummary(*this, SummaryKind::Minimum, std::move(overGroup));
}
ControlDesign& ControlDesign::maximum(std::string overGroup) {
    return setSummary(*this, SummaryKind::Maximum, std::move(overGroup));
}
ControlDesign& ControlDesign::pageCount() {
    return setSummary(*this, SummaryKind::PageCount, {});
}
ControlDesign& ControlDesign::pageNumber() {
    return setSummary(*this, SummaryKind::PageNumber, {});
}
ControlDesign& ControlDesign::fill(page::Color rgb) {
    background = rgb;
    return *this;
}
ControlDesign& ControlDesign::weight(int twips) {
    lineWeight = twips;
    return *this;
}

SectionDesign& SectionDesign::keepTogetherOnPage() {
    keepTogether = true;
    return *this;
}
SectionDesign& SectionDesign::pageBreakBefore() {
    newPageBefore = true;
    return *this;
}
SectionDesign& SectionDesign::pageBreakAfter() {
    newPageAfter = true;
    return *this;
}
SectionDesign& SectionDesign::fixedHeight() {
    canGrow = false;
    return *this;
}
SectionDesign& SectionDesign::hidden() {
    visible = false;
    return *this;
}
SectionDesign& SectionDesign::columns(int count, ColumnDirection direction, int width,
                                      int spacing) {
    columnCount = count;
    columnDirection = direction;
    columnWidth = width;
    columnSpacing = spacing;
    return *this;
}

int PageSettings::pageWidth() const {
    return orientation == page::Orientation::Landscape ? paperHeight : paperWidth;
}
int PageSettings::pageHeight() const {
    return orientation == page::Orientation::Landscape ? paperWidth : paperHeight;
}

// ---- Builders -------------------------------------------------------------------------------

namespace {

ControlDesign makeControl(ControlKind kind, std::string name, page::Rect rect) {
    ControlDesign c;
    c.kind = kind;
    c.name = std::move(name);
    c.rect = rect;
    return c;
}

SectionDesign makeSection(SectionKind kind, std::string name, int height,
                          std::vector<ControlDesign> controls) {
    SectionDesign s;
    s.kind = kind;
    s.name = std::move(name);
    s.height = height;
    s.controls = std::move(controls);
    return s;
}

} // namespace

ControlDesign label(std::string name, page::Rect rect, std::string caption) {
    ControlDesign c = makeControl(ControlKind::Label, std::move(name), rect);
    c.caption = std::move(caption);
    return c;
}

ControlDesign textBox(std::string name, page::Rect rect, std::string dataField) {
    ControlDesign c = makeControl(ControlKind::TextBox, std::move(name), rect);
    c.dataField = std::move(dataField);
    return c;
}

ControlDesign checkBox(std::string name, page::Rect rect, std::string dataField) {
    ControlDesign c = makeControl(ControlKind::CheckBox, std::move(name), rect);
    c.dataField = std::move(dataField);
    return c;
}

ControlDesign line(std::string name, int x1, int y1, int x2, int y2) {
    return makeControl(ControlKind::Line, std::move(name), {x1, y1, x2 - x1, y2 - y1});
}

ControlDesign shape(std::string name, page::Rect rect, ShapeStyle style) {
    ControlDesign c = makeControl(ControlKind::Shape, std::move(name), rect);
    c.style = style;
    return c;
}

ControlDesign subReport(std::string name, page::Rect rect) {
    return makeControl(ControlKind::SubReport, std::move(name), rect);
}

SectionDesign reportHeader(std::string name, int height, std::vector<ControlDesign> controls) {
    return makeSection(SectionKind::ReportHeader, std::move(name), height, std::move(controls));
}
SectionDesign pageHeader(std::string name, int height, std::vector<ControlDesign> controls) {
    return makeSection(SectionKind::PageHeader, std::move(name), height, std::move(controls));
}
SectionDesign groupHeader(std::string name, std::string groupField, int height,
                          std::vector<ControlDesign> controls) {
    SectionDesign s =
        makeSection(SectionKind::GroupHeader, std::move(name), height, std::move(controls));
    s.groupField = std::move(groupField);
    return s;
}
SectionDesign detail(std::string name, int height, std::vector<ControlDesign> controls) {
    return makeSection(SectionKind::Detail, std::move(name), height, std::move(controls));
}
SectionDesign groupFooter(std::string name, std::string header, int height,
                          std::vector<ControlDesign> controls) {
    SectionDesign s =
        makeSection(SectionKind::GroupFooter, std::move(name), height, std::move(controls));
    s.header = std::move(header);
    return s;
}
SectionDesign pageFooter(std::string name, int height, std::vector<ControlDesign> controls) {
    return makeSection(SectionKind::PageFooter, std::move(name), height, std::move(controls));
}
SectionDesign reportFooter(std::string name, int height, std::vector<ControlDesign> controls) {
    return makeSection(SectionKind::ReportFooter, std::move(name), height, std::move(controls));
}

// ---- Checks ---------------------------------------------------------------------------------

namespace {

class DesignChecker {
  public:
    explicit DesignChecker(const ReportDesign& design) : m_design(design) {}

    void check() {
        if (m_design.name.empty())
            fail("A report design has no name.");
        checkPage();
        checkSectionOrder();
        std::set<std::string> controlNames;
        for (const SectionDesign& section : m_design.sections) {
            checkSection(section);
            for (const ControlDesign& control : section.controls) {
                if (control.name.empty())
                    fail(where(section) + " has a control without a name.");
                if (!controlNames.insert(control.name).second)
                    fail(m_design.name + ": two controls are named " + control.name + ".");
                checkControl(section, control);
            }
        }
    }

  private:
    [[noreturn]] void fail(const std::string& description) const {
        throw Error(errc::kComponent, "ReportDesign", description);
    }

    std::string where(const SectionDesign& s) const {
        return m_design.name + ": " + sectionKindName(s.kind) + " " + s.name;
    }
    std::string where(const SectionDesign& s, const ControlDesign& c) const {
        return m_design.name + ": " + controlKindName(c.kind) + " " + c.name + " in " + s.name;
    }

    void checkPage() const {
        const PageSettings& p = m_design.page;
        const std::string who = m_design.name + ": page settings";
        if (p.paperWidth <= 0 || p.paperHeight <= 0)
            fail(who + " give no paper size.");
        if (p.marginLeft < 0 || p.marginRight < 0 || p.marginTop < 0 || p.marginBottom < 0)
            fail(who + " have a negative margin.");
        if (p.printWidth <= 0)
            fail(who + " give no print width.");
        if (p.marginLeft + p.printWidth + p.marginRight > p.pageWidth())
            fail(who + ": left margin " + std::to_string(p.marginLeft) + " + print width " +
                 std::to_string(p.printWidth) + " + right margin " + std::to_string(p.marginRight) +
                 " exceed the paper width " + std::to_string(p.pageWidth()) + ".");
        if (p.marginTop + p.marginBottom >= p.pageHeight())
            fail(who + ": top and bottom margins leave no room on the paper.");
    }

    static int rank(SectionKind kind) { return static_cast<int>(kind); }

    void checkSectionOrder() {
        std::set<std::string> names;
        int lastRank = -1;
        int details = 0;
        for (const SectionDesign& s : m_design.sections) {
            if (s.name.empty())
                fail(m_design.name + ": a section has no name.");
            if (!names.insert(s.name).second)
                fail(m_design.name + ": two sections are named " + s.name + ".");
            const int r = rank(s.kind);
            const bool repeatable =
                s.kind == SectionKind::GroupHeader || s.kind == SectionKind::GroupFooter;
            if (r < lastRank || (r == lastRank && !repeatable))
                fail(where(s) + " is out of order or repeated (sections go report header, page "
                                "header, group headers, detail, group footers, page footer, "
                                "report footer).");
            lastRank = r;
            if (s.kind == SectionKind::Detail)
                ++details;
            if (s.kind == SectionKind::GroupHeader)
                m_headers.push_back(s.name);
        }
        if (details != 1)
            fail(m_design.name + ": the design has no detail section.");
        checkFooterNesting();
    }

    void checkFooterNesting() const {
        // Footers close their headers innermost first: the footers that exist must name the
        // headers in reverse order.
        int lastHeader = static_cast<int>(m_headers.size());
        std::set<std::string> closed;
        for (const SectionDesign& s : m_design.sections) {
            if (s.kind != SectionKind::GroupFooter)
                continue;
            auto it = std::find(m_headers.begin(), m_headers.end(), s.header);
            if (it == m_headers.end())
                fail(where(s) + " closes the group header \"" + s.header +
                     "\", which does not exist.");
            if (!closed.insert(s.header).second)
                fail(where(s) + ": the group header " + s.header + " already has a footer.");
            const int index = static_cast<int>(it - m_headers.begin());
            if (index >= lastHeader)
                fail(where(s) + " closes " + s.header +
                     " out of nesting order (inner groups close first).");
            lastHeader = index;
        }
    }

    int bandWidth(const SectionDesign& s) const {
        const int printWidth = m_design.page.printWidth;
        if (s.columnCount <= 1)
            return printWidth;
        if (s.columnWidth > 0)
            return s.columnWidth;
        return (printWidth - s.columnSpacing * (s.columnCount - 1)) / s.columnCount;
    }

    void checkSection(const SectionDesign& s) const {
        if (s.height < 0)
            fail(where(s) + " has a negative height.");
        if (s.kind != SectionKind::GroupHeader && !s.groupField.empty())
            fail(where(s) + " has a group field but is not a group header.");
        if (s.columnCount < 1)
            fail(where(s) + " has fewer than one column.");
        if (s.columnCount > 1) {
            if (s.kind != SectionKind::Detail)
                fail(where(s) + " has columns; only the detail section can.");
            if (s.columnSpacing < 0)
                fail(where(s) + " has a negative column spacing.");
            const int used = bandWidth(s) * s.columnCount + s.columnSpacing * (s.columnCount - 1);
            if (bandWidth(s) <= 0 || used > m_design.page.printWidth)
                fail(where(s) + ": " + std::to_string(s.columnCount) +
                     " columns do not fit the print width " +
                     std::to_string(m_design.page.printWidth) + ".");
        }
    }

    void checkControl(const SectionDesign& s, const ControlDesign& c) const {
        const std::string who = where(s, c);
        checkGeometry(s, c, who);
        const bool showsField = c.kind == ControlKind::TextBox || c.kind == ControlKind::CheckBox;
        if (!c.dataField.empty() && !showsField)
            fail(who + " is bound to " + c.dataField + " but cannot show a field.");
        if (c.font.sizePoints <= 0)
            fail(who + " has a font size of zero or less.");
        if (c.lineWeight < 0)
            fail(who + " has a negative line weight.");
        checkSummary(c, who);
        if (!c.outputFormat.empty()) {
            if (c.kind != ControlKind::TextBox)
                fail(who + " has an output format.");
            try {
                (void)NumberFormat::parse(c.outputFormat);
            } catch (const Error& e) {
                fail(who + ": output format \"" + c.outputFormat + "\": " + e.description());
            }
        }
    }

    void checkGeometry(const SectionDesign& s, const ControlDesign& c,
                       const std::string& who) const {
        page::Rect r = c.rect;
        if (c.kind == ControlKind::Line) {
            // A line may run in any direction; check the box it spans.
            r = {std::min(r.x, r.x + r.width), std::min(r.y, r.y + r.height), std::abs(r.width),
                 std::abs(r.height)};
        } else if (r.width < 0 || r.height < 0) {
            fail(who + " has a negative size.");
        }
        if (r.x < 0 || r.y < 0)
            fail(who + " lies left of or above its section.");
        const int width = bandWidth(s);
        if (r.x + r.width > width)
            fail(who + " reaches " + std::to_string(r.x + r.width) + ", outside the " +
                 (s.columnCount > 1 ? "column width " : "print width ") + std::to_string(width) +
                 ".");
        if (r.y + r.height > s.height)
            fail(who + " reaches " + std::to_string(r.y + r.height) +
                 ", below the bottom of its section (" + std::to_string(s.height) + ").");
    }

    void checkSummary(const ControlDesign& c, const std::string& who) const {
        const SummaryKind kind = c.summary.kind;
        if (kind == SummaryKind::None)
            return;
        if (c.kind != ControlKind::TextBox)
            fail(who + " has a summary; only text boxes can.");
        if (kind == SummaryKind::PageCount || kind == SummaryKind::PageNumber)
            return;
        if (c.dataField.empty())
            fail(who + " summarises no field.");
        if (!c.summary.group.empty() &&
            std::find(m_headers.begin(), m_headers.end(), c.summary.group) == m_headers.end())
            fail(who + " summarises over the group \"" + c.summary.group +
                 "\", which is not a group header of the report.");
    }

    const ReportDesign& m_design;
    std::vector<std::string> m_headers;
};

} // namespace

void checkDesign(const ReportDesign& design) {
    DesignChecker(design).check();
}

} // namespace qr::engine
