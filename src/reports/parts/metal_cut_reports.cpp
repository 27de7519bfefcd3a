// The metal cut listing and the four metal label sheets: their designs, then the handlers they
// share, in the order the engine raises them.
#include "reports/parts/metal_cut_reports.hpp"

#include "platform/core/error.hpp"
#include "platform/host/error_log.hpp"
#include "reports/common/design_helpers.hpp"
#include "reports/common/heading.hpp"
#include "reports/common/label_sheet.hpp"
#include "reports/common/page_footer.hpp"

#include <array>
#include <cstdlib>
#include <string>

namespace qr::reports {

namespace {

using engine::ControlDesign;

// ---- AR2MetalCutListings: one line per cut on plain Letter paper ----------------------------

constexpr int kListingWidth = 10815;
constexpr double kListingSize = 9;
constexpr int kCaptionTop = 880;
constexpr int kListingLine = 250;

// One column of the list: its caption, the detail box and the field it shows. Texts are cut at
// the column's edge, so a long elevation name never runs off the page.
struct ListingColumn {
    const char* heading;
    const char* box;
    const char* field;
    int x;
    int width;
};

constexpr std::array<ListingColumn, 5> kListingColumns{{
    {"Type", "txtPartType", "PartType", 0, 1800},
    {"Cut Length", "txtCutLength", "CutLength", 1850, 1300},
    {"Stock Number", "Stocknumber", "StockOfStocks", 3200, 1500},
    {"Part Number", "txtPartnumber", "PartNumber", 4750, 2400},
    {"Elevation", "txtElevation", "ElevationName", 7200, kListingWidth - 7200},
}};

engine::SectionDesign listingHeader() {
    CaptionMaker caption(kListingSize);
    std::vector<ControlDesign> controls{
        textLabel("RptDate", {0, 0, 2400, 240}, kListingSize),
        caption.bold({2400, 0, kListingWidth - 4800, 380}, "Metal Cut Listing Report")
            .size(14)
            .alignCenter(),
        textLabel("RptTime", {kListingWidth - 2400, 0, 2400, 240}, kListingSize).alignRight(),
        caption.bold({0, 500, 1150, 260}, "Job  Name:"),
        textLabel("JobNameField", {1200, 500, 6000, 260}, kListingSize).noWrap(),
        engine::line("Line1", 0, 820, kListingWidth, 820),
    };
    for (const ListingColumn& c : kListingColumns)
        controls.push_back(caption.bold({c.x, kCaptionTop, c.width, kListingLine}, c.heading));
    return engine::pageHeader("PageHeader", kCaptionTop + kListingLine + 60, std::move(controls));
}

engine::SectionDesign listingDetail() {
    std::vector<ControlDesign> controls;
    for (const ListingColumn& c : kListingColumns) {
        controls.push_back(engine::textBox(c.box, {c.x, 40, c.width - 50, kListingLine}, c.field)
                               .size(kListingSize)
                               .noWrap());
    }
    return engine::detail("Detail", 330, std::move(controls)).fixedHeight();
}

engine::ReportDesign listingDesign() {
    engine::ReportDesign d;
    d.name = "AR2MetalCutListings";
    d.title = "Metal Cut Sheet in List Format";
    d.page.marginLeft = 225;
    d.page.marginRight = 0;
    d.page.marginTop = 760;
    d.page.marginBottom = 400;
    d.page.printWidth = kListingWidth;
    d.sections.push_back(listingHeader());
    d.sections.push_back(listingDetail());
    d.sections.push_back(pageNumberFooter({kListingWidth - 3000, 60, 3000, 240}, kListingSize));
    return d;
}

// ---- Label sheets ---------------------------------------------------------------------------

/// Puts one-line controls of one size onto a label of `sheet`, line by line. Every control is
/// placed with a LabelFrame, so none reaches over the label's edge; boxes do not wrap, so a
/// long text is cut at its box, inside the label.
class LabelLines {
  public:
    struct Metrics {
        double size;
        int first;  ///< top of the first line on the label
        int pitch;  ///< from one line to the next
        int height; ///< of a line's controls
        int left;   ///< left edge of the text on the label
        int right;  ///< right edge of the text on the label
    };

    LabelLines(const LabelSheet& sheet, Metrics metrics) : m_frame(sheet), m_m(metrics) {}

    /// A text box bound to `field` on `line`, from `x` to `right` (0: as far right as the
    /// label's text reaches).
    ControlDesign box(const char* name, int line, int x, int right, const char* field) const {
        return engine::textBox(name, m_frame.place(on(line, x, right)), field)
            .size(m_m.size)
            .noWrap()
            .clipped();
    }
    /// A static caption on `line`.
    ControlDesign caption(const char* name, int line, int x, int right, const char* text) const {
        return engine::label(name, m_frame.place(on(line, x, right)), text).size(m_m.size).noWrap();
    }
    const Metrics& metrics() const { return m_m; }

  private:
    page::Rect on(int line, int x, int right) const {
        const int end = right > 0 ? right : m_m.right;
        return {x, m_m.first + line * m_m.pitch, end - x, m_m.height};
    }

    LabelFrame m_frame;
    Metrics m_m;
};

// Avery 5260: 2 5/8 x 1 in, six lines.
engine::ReportDesign avery5260Design() {
    const LabelLines l(
        kAvery5260,
        {.size = 8, .first = 60, .pitch = 225, .height = 210, .left = 120, .right = 3660});
    const int left = l.metrics().left;
    constexpr int split = 2440; // the length, right of the part type
    constexpr int value = 1300; // values after the captions
    return labelDesign(kAvery5260, "arAvery5260MetalLabels", "Avery 5260 Metal Label",
                       {
                           l.box("txtPartType", 0, left, split - 40, "PartType").bold(),
                           l.box("txtLength", 0, split, 0, "Length").bold(),
                           l.caption("Label1", 1, left, value - 40, "Stock number"),
                           l.box("txtStockNumber", 1, value, 0, "StockNumber"),
                           l.caption("Label2", 2, left, value - 40, "Part number"),
                           l.box("txtPartNumber", 2, value, 0, "PartNumber"),
                           l.caption("Label3", 3, left, value - 40, "Elevation"),
                           l.box("txtElevation", 3, value, 0, "ElevationName"),
                           l.caption("Label4", 4, left, value - 40, "Job"),
                           l.box("txtJobName", 4, value, 0, "JobName"),
                           l.caption("Label5", 5, left, value - 40, "Piece Label"),
                           l.box("txtCutLabel", 5, value, 0, "CutLabel"),
                       });
}

// Avery 5267: 1 3/4 x 1/2 in, three lines; the variants differ in the first two.
struct Box {
    const char* name;
    const char* field;
};

struct Variant5267 {
    char id;
    const char* name;
    const char* title;
    Box firstLeft;         ///< left of the length on the first line
    Box secondLeft;        ///< first on the second line
    const char* separator; ///< the caption between the second line's boxes
    Box secondRight;
};

constexpr Variant5267 kVariants[] = {
    {'A',
     "arAvery5267AMetalLabels",
     "Avery 5267 Metal Label #1",
     {"txtPartType", "PartType"},
     {"txtPartNumber", "PartNumber"},
     "J:",
     {"txtJobName", "JobName"}},
    {'B',
     "arAvery5267BMetalLabels",
     "Avery 5267 Metal Label #2",
     {"txtPartType", "PartType"},
     {"txtStockNumber", "StockNumber"},
     "J:",
     {"txtJobName", "JobName"}},
    {'C',
     "arAvery5267CMetalLabels",
     "Avery 5267 Metal Label #3",
     {"txtPartNumber", "PartNumber"},
     {"txtStockNumber", "StockNumber"},
     ":",
     {"txtPartType", "PartType"}},
};

engine::ReportDesign avery5267Design(char variant) {
    const LabelLines l(
        kAvery5267,
        {.size = 7, .first = 60, .pitch = 210, .height = 190, .left = 80, .right = 2440});
    const int left = l.metrics().left;
    constexpr int split = 1600; // the length, right of the first line's box
    constexpr int second = 900; // the separator on the second line
    constexpr int third = 1120; // the second line's right box
    for (const Variant5267& v : kVariants) {
        if (v.id != variant)
            continue;
        return labelDesign(
            kAvery5267, v.name, v.title,
            {
                l.box(v.firstLeft.name, 0, left, split - 40, v.firstLeft.field).bold(),
                l.box("txtLength", 0, split, 0, "Length").bold(),
                l.box(v.secondLeft.name, 1, left, second - 40, v.secondLeft.field),
                l.caption("Label1", 1, second, third - 20, v.separator),
                l.box(v.secondRight.name, 1, third, 0, v.secondRight.field),
                l.caption("Label2", 2, left, 280, "E:"),
                l.box("txtElevation", 2, 300, 0, "ElevationName"),
            });
    }
    throw Error::component(
        "MetalLabels", std::string("There is no Avery 5267 metal label variant ") + variant + ".");
}

/// An offset that would move the sheet further than the paper reaches.
void checkOffset(const engine::PageSettings& page, std::int32_t offset, const char* which) {
    if (std::llabs(static_cast<long long>(offset)) > page.paperHeight) {
        throw Error::component("MetalLabels", std::string("The label sheet's ") + which +
                                                  " offset of " + std::to_string(offset) +
                                                  " twips moves it off the paper.");
    }
}

} // namespace

// ---- Handlers, in the order the engine raises them ------------------------------------------

MetalCutReport::MetalCutReport(engine::ReportDesign design, MetalCutLayout layout)
    : Report(design), m_designPage(design.page), m_layout(layout) {
    if (m_layout == MetalCutLayout::Listing)
        onFormat("PageFooter", [this] { formatPageNumberFooter(*this); });
}

AR2MetalCutListings::AR2MetalCutListings()
    : MetalCutReport(listingDesign(), MetalCutLayout::Listing) {}

arAvery5260MetalLabels::arAvery5260MetalLabels()
    : MetalCutReport(avery5260Design(), MetalCutLayout::CutPartTypeLabel) {}

arAvery5267AMetalLabels::arAvery5267AMetalLabels()
    : MetalCutReport(avery5267Design('A'), MetalCutLayout::CutPartTypeLabel) {}

arAvery5267BMetalLabels::arAvery5267BMetalLabels()
    : MetalCutReport(avery5267Design('B'), MetalCutLayout::CutPartTypeLabel) {}

arAvery5267CMetalLabels::arAvery5267CMetalLabels()
    : MetalCutReport(avery5267Design('C'), MetalCutLayout::PiecePartTypeLabel) {}

const host::CutLabelsReportData& MetalCutReport::data() const {
    if (ReportData == nullptr)
        throw Error::objectNotSet(className());
    return *ReportData;
}

void MetalCutReport::initialize() {
    if (m_layout == MetalCutLayout::Listing) {
        for (const char* name :
             {"PartNumber", "PartType", "StockOfStocks", "ElevationName", "CutLength"})
            fields().add(name);
        return;
    }
    for (const char* name : {"PartNumber", "PartType", "Length", "StockNumber", "ElevationName",
                             "JobName", "CutLabel"})
        fields().add(name);
}

void MetalCutReport::reportStart() {
    if (m_layout == MetalCutLayout::Listing) {
        host::runTrapped(className(), "ActiveReport_ReportStart", [this] {
            label("JobNameField").setCaption(data().Job.JobName);
            showReportDateTime(*this);
        });
        return;
    }
    // The offsets move the sheet on each run; each run starts from the design's margins.
    pageSettings() = m_designPage;
    const host::CutLabelsReportData& d = data();
    checkOffset(pageSettings(), d.TopOffset, "top");
    checkOffset(pageSettings(), d.LeftOffset, "left");
    applyLabelOffsets(pageSettings(), d.TopOffset, d.LeftOffset);
}

void MetalCutReport::fetchData(bool& eof) {
    const std::vector<host::StockPiece>& pieces = data().StockPieces;
    eof = m_piece >= static_cast<std::int64_t>(pieces.size());
    if (eof)
        return;
    const host::StockPiece& piece = pieces[static_cast<std::size_t>(m_piece)];
    const auto cuts = static_cast<std::int64_t>(piece.Cuts.size());
    if (m_cut >= cuts)
        throw Error::subscriptOutOfRange(className());
    const host::MetalCut& cut = piece.Cuts[static_cast<std::size_t>(m_cut)];
    if (m_layout == MetalCutLayout::Listing)
        fillListingFields(piece, cut);
    else
        fillLabelFields(piece, cut);
    if (m_cut == cuts - 1) {
        m_cut = 0;
        ++m_piece;
    } else {
        ++m_cut;
    }
}

void MetalCutReport::fillListingFields(const host::StockPiece& piece, const host::MetalCut& cut) {
    fields()["PartNumber"].setValue(piece.Part.PartNumber);
    fields()["PartType"].setValue(piece.Part.PartType);
    fields()["CutLength"].setValue(cut.CutLength);
    fields()["StockOfStocks"].setValue(std::to_string(piece.StockNumber) + " of " +
                                       std::to_string(piece.StockCount));
    fields()["ElevationName"].setValue(cut.ElevationName);
}

void MetalCutReport::fillLabelFields(const host::StockPiece& piece, const host::MetalCut& cut) {
    fields()["PartNumber"].setValue(piece.Part.PartNumber);
    fields()["PartType"].setValue(
        m_layout == MetalCutLayout::PiecePartTypeLabel ? piece.Part.PartType : cut.PartType);
    fields()["Length"].setValue(m_fractions.ToFractionString(cut.CutLength, 0, 64));
    fields()["StockNumber"].setValue(piece.StockNumber);
    fields()["ElevationName"].setValue(cut.ElevationName);
    fields()["JobName"].setValue(data().Job.JobName);
    fields()["CutLabel"].setValue(cut.CutLabel);
}

} // namespace qr::reports
