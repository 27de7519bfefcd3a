// The four glass label sheets: one label per lite, on Avery 5260 (five lines) and Avery 5267
// (three lines, in three variants of the first line). Every control is placed on its label with
// a LabelFrame, so the design cannot reach over a label's edge; text boxes do not wrap, so a
// long text is cut at its box, inside the label.
#include "platform/core/error.hpp"
#include "reports/common/label_sheet.hpp"
#include "reports/glass/glass_cut_reports.hpp"

namespace qr::reports {

namespace {

using engine::ControlDesign;

/// Puts text controls of one size onto a label of `sheet`.
class LabelWriter {
  public:
    LabelWriter(const LabelSheet& sheet, double size) : m_frame(sheet), m_size(size) {}

    ControlDesign box(const char* name, page::Rect onLabel, const char* column) const {
        return engine::textBox(name, m_frame.place(onLabel), column).size(m_size).noWrap();
    }
    ControlDesign caption(const char* name, page::Rect onLabel, const char* text) const {
        return engine::label(name, m_frame.place(onLabel), text).size(m_size).noWrap();
    }

  private:
    LabelFrame m_frame;
    double m_size;
};

// ---- Avery 5260: 2 5/8 x 1 in, five lines -------------------------------------------------

constexpr int k5260Left = 120;
constexpr int k5260Right = 3660; // 120 twips inside the label's right edge
constexpr int k5260Line = 250;
constexpr int k5260Height = 230;
constexpr int k5260First = 110;

page::Rect onLine5260(int line, int x, int right) {
    return {x, k5260First + line * k5260Line, right - x, k5260Height};
}

std::vector<ControlDesign> avery5260Label() {
    const LabelWriter w(kAvery5260, 9);
    constexpr int value = 700; // values after the captions
    return {
        w.box("txtLabel", onLine5260(0, k5260Left, 1160), "sLabel").bold(),
        w.box("txtGlassType", onLine5260(0, 1200, 2860), "sGlassType"),
        w.box("PartType", onLine5260(0, 2900, k5260Right), "sPartType"),
        w.caption("Label2", onLine5260(1, k5260Left, value - 40), "Cut:"),
        w.box("txtWidth", onLine5260(1, value, 1640), "sWidth"),
        w.box("txtLeftHeight", onLine5260(1, 1680, 2620), "sLeftHeight"),
        w.box("txtRightHeight", onLine5260(1, 2660, k5260Right), "sRightHeight"),
        w.caption("Label3", onLine5260(2, k5260Left, value - 40), "Descr:"),
        w.box("txtDescription", onLine5260(2, value, k5260Right), "sDescription"),
        w.caption("Label5", onLine5260(3, k5260Left, value - 40), "Elev:"),
        w.box("txt", onLine5260(3, value, 1100), "iElevSort"),
        w.box("txtElevation", onLine5260(3, 1140, k5260Right), "sElevName"),
        w.caption("Label4", onLine5260(4, k5260Left, value - 40), "Job:"),
        w.box("txtJobname", onLine5260(4, value, k5260Right), "sJobname"),
    };
}

// ---- Avery 5267: 1 3/4 x 1/2 in, three lines ------------------------------------------------

constexpr int k5267Left = 80;
constexpr int k5267Right = 2440; // 80 twips inside the label's right edge
constexpr int k5267Line = 210;
constexpr int k5267Height = 190;
constexpr int k5267First = 60;

page::Rect onLine5267(int line, int x, int right) {
    return {x, k5267First + line * k5267Line, right - x, k5267Height};
}

// What the first line of a 5267 variant shows, left and right.
struct FirstLine {
    const char* leftBox;
    const char* leftColumn;
    const char* rightBox;
    const char* rightColumn;
    int split;       ///< where the right box starts on the label
    bool leftIsMark; ///< the left box shows the glass label, in bold
};

struct Variant5267 {
    char id;
    const char* name;
    const char* title;
    FirstLine first;
};

constexpr Variant5267 kVariants[] = {
    {'A',
     "arAvery5267AGlassLabels",
     "Avery 5267 Glass Label #1",
     {"txtLabel", "sLabel", "txtDescription", "sDescription", 860, true}},
    {'B',
     "arAvery5267BGlassLabels",
     "Avery 5267 Glass Label #2",
     {"txtLabel", "sLabel", "txtGlassType", "sGlassType", 860, true}},
    {'C',
     "arAvery5267CGlassLabels",
     "Avery 5267Glass Label #3",
     {"txtGlassType", "sGlassType", "txtDescription", "sDescription", 1320, false}},
};

std::vector<ControlDesign> avery5267Label(const FirstLine& first) {
    const LabelWriter w(kAvery5267, 7);
    const int third = (k5267Right - k5267Left) / 3;
    ControlDesign left =
        w.box(first.leftBox, onLine5267(0, k5267Left, first.split - 40), first.leftColumn);
    if (first.leftIsMark)
        left.bold();
    return {
        std::move(left),
        w.box(first.rightBox, onLine5267(0, first.split, k5267Right), first.rightColumn),
        w.box("txtWidth", onLine5267(1, k5267Left, k5267Left + third - 40), "sWidth"),
        w.box("txtLeftHeight", onLine5267(1, k5267Left + third, k5267Left + 2 * third - 40),
              "sLeftHeight"),
        w.box("txtRightHeight", onLine5267(1, k5267Left + 2 * third, k5267Right), "sRightHeight"),
        w.caption("Label2", onLine5267(2, k5267Left, 280), "E:"),
        w.box("txt", onLine5267(2, 300, 600), "iElevSort"),
        w.box("txtElevation", onLine5267(2, 640, k5267Right), "sElevName"),
    };
}

} // namespace

namespace glass_cut {

engine::ReportDesign avery5260Design() {
    return labelDesign(kAvery5260, "arAvery5260GlassLabels", "Avery 5260 Glass Label",
                       avery5260Label());
}

engine::ReportDesign avery5267Design(char variant) {
    for (const Variant5267& v : kVariants) {
        if (v.id == variant)
            return labelDesign(kAvery5267, v.name, v.title, avery5267Label(v.first));
    }
    throw Error::component(
        "GlassLabels", std::string("There is no Avery 5267 glass label variant ") + variant + ".");
}

} // namespace glass_cut

arAvery5260GlassLabels::arAvery5260GlassLabels()
    : GlassCutReport(glass_cut::avery5260Design(), GlassCutRows::LabelOrder) {}

arAvery5267AGlassLabels::arAvery5267AGlassLabels()
    : GlassCutReport(glass_cut::avery5267Design('A'), GlassCutRows::LabelOrderUpperSelect) {}

arAvery5267BGlassLabels::arAvery5267BGlassLabels()
    : GlassCutReport(glass_cut::avery5267Design('B'), GlassCutRows::LabelOrderUpperSelect) {}

arAvery5267CGlassLabels::arAvery5267CGlassLabels()
    : GlassCutReport(glass_cut::avery5267Design('C'), GlassCutRows::LabelOrderUpperSelect) {}

} // namespace qr::reports
