#pragma once
// Lays a section out as a band: one page item per visible control, texts laid out with the
// text layout, growing controls growing their section (and pushing down what stands below
// them), sub-reports run in place. Also cuts a band in two for pagination.

#include "platform/engine/fill/band.hpp"
#include "platform/engine/fill/paginator.hpp"
#include "platform/engine/fill/text_layout.hpp"

#include <functional>
#include <vector>

namespace qr::engine {

class Section;
class SubReport;
class TextBox;

class BandBuilder {
  public:
    /// Runs a sub-report's report as a strip `width` wide into `strip`.
    using SubReportRunner = std::function<void(SubReport& box, Band& strip)>;

    BandBuilder(TextLayout& text, SubReportRunner runSubReport);

    /// Lay `section` out into `band` (cleared first).
    void build(Section& section, Band& band);
    /// Lay out again, within their boxes, the texts that handlers changed after `build`.
    void refresh(Band& band);
    /// The uncuttable stretches of the band's items.
    void atoms(const Band& band, std::vector<Atom>& out);
    /// Cut `band` at `cut`: it keeps what lies above, `tail` gets the rest moved up by `cut`.
    void split(Band& band, int cut, Band& tail);
    /// Set the text of a deferred page-number box and lay it out in its box; returns whether
    /// the text had to be cut to the box.
    bool resolve(page::TextItem& item, std::string text, bool wrap);
    /// The lines a text item prints, joined by "\n".
    static std::string printedText(const page::TextItem& item);

    /// Move an item by (dx, dy).
    static void offset(page::Item& item, int dx, int dy);
    /// Move the items of `from` (with what waits on them) to the end of `to`, shifted by
    /// (dx, dy); `from` is left empty.
    static void append(Band& from, int dx, int dy, Band& to);
    /// Mark a text or check-box item as printed in `pageBand` (a sub-report's items take the
    /// band of the section they print in).
    static void setPageBand(page::Item& item, page::PageBand pageBand);

  private:
    struct Placed {
        int top = 0;
        int bottom = 0;
        int growth = 0;
        size_t firstItem = 0;
        size_t endItem = 0;
        size_t firstSource = 0;
        size_t endSource = 0;
    };

    int fontOf(Control& control);
    /// Add the control's items to the band; returns how much taller than designed it came out.
    int addControl(Control& control, const Section& section, bool grow, Band& band);
    int addText(Control& control, const Section& section, std::string text, bool grow, Band& band);
    void addDeferred(TextBox& box, const Section& section, Band& band);
    void addCheckBox(Control& control, const Section& section, Band& band);
    int addSubReport(SubReport& box, const Section& section, Band& band);
    /// Current text of a label or text box (the printed form).
    static std::string currentText(Control& control);
    /// Fill a text item's text, runs and numeric value from its control; returns the height
    /// its lines need and whether it was cut.
    TextLayout::Result fillText(page::TextItem& item, Control& control, std::string text,
                                bool grow);
    /// Note (or forget) that the text item at `index` was cut to its box.
    static void markCut(Band& band, int index, const page::TextItem& item, bool cut, bool clipped);
    /// Notes about items (deferred texts, cut marks) follow their items when a band is cut:
    /// `moved` maps each item to its index in the head (>= 0) or -(index + 1) in the tail.
    template <class Note>
    static void followItems(std::vector<Note>& head, std::vector<Note>& tail,
                            const std::vector<int>& moved);
    /// Cut a text between its lines: it keeps the lines above `cut`, a copy holding the rest
    /// goes to `tail`.
    void splitText(page::TextItem& text, int cut, Band& tail);
    void pushDown(std::vector<Placed>& placed, Band& band, int designHeight);
    void itemAtoms(const page::Item& item, std::vector<Atom>& out);

    TextLayout& m_text;
    SubReportRunner m_runSubReport;
    std::vector<Placed> m_placed;
    std::vector<Atom> m_scratch;
    Band m_strip;
};

} // namespace qr::engine
