#include "reports/parts/cut_list.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/host/error_log.hpp"
#include "reports/common/page_footer.hpp"
#include "reports/parts/parts_layout.hpp"

namespace qr::reports {

namespace {

// ---- Design ---------------------------------------------------------------------------------

using engine::ControlDesign;

constexpr int kWidth = 14415;
constexpr double kSize = parts::kHeadingTextSize;
constexpr double kLineSize = parts::kLineTextSize;

// The eight cut boxes of a line, each framed by a shape of its own.
constexpr int kCutCount = 8;
constexpr int kFirstCutX = 800;
constexpr int kCutStep = 1700;
constexpr int kCutWidth = 1640;
constexpr int kCutHeight = 280;

/// The frame of cut `n` (1 to 8): Shape1 to Shape5, Rect6, Rect7, Shape8.
const char* frameOf(int n) {
    static constexpr const char* kNames[kCutCount] = {"Shape1", "Shape2", "Shape3", "Shape4",
                                                      "Shape5", "Rect6",  "Rect7",  "Shape8"};
    return kNames[n - 1];
}

std::string cutField(int n) {
    return "Cut" + std::to_string(n);
}

engine::SectionDesign pageHeader(CaptionMaker& captions) {
    std::vector<ControlDesign> controls;
    const int headingHeight = parts::addHeadingBlock(
        controls,
        {.title = "Cut Patterns for Stock Lengths",
         .width = kWidth,
         .left = {{"Vendor:", "lVendor"}, {"Job  Name:", "lJobName"}, {"Finish Color:", "lColor"}},
         .right = {{"Phone:", "lPhone"}, {"Fax:", "lFax"}}},
        captions);
    controls.push_back(engine::line("Line1", 0, headingHeight, kWidth, headingHeight).weight(20));
    return engine::pageHeader("PageHeader", headingHeight + 80, std::move(controls));
}

/// Once per part and stock length: the part, and the stock length the patterns are cut from.
engine::SectionDesign stockLengthHeader() {
    return engine::groupHeader(
        "GroupHeader2", "StockLength", 620,
        {engine::label("Label9", {0, 80, 800, 240}, "Part #:").bold().size(kSize),
         engine::textBox("PartNumberField", {850, 80, 2000, 240}, "PartNumber").bold().size(kSize),
         engine::textBox("DescriptionField", {2950, 80, 5500, 240}, "Description").size(kSize),
         engine::label("Label10", {8600, 80, 1300, 240}, "Stock Length:").bold().size(kSize),
         engine::label("lStockorRandom", {9950, 80, 700, 240}, "Stock").size(kSize),
         engine::textBox("StockLengthField", {10700, 80, 1800, 240}, "StockLength")
             .format("#,##0.0000")
             .bold()
             .size(kSize),
         engine::label("Label54", {kFirstCutX, 370, 4000, 220}, "Cut Length (Elevation Code) ")
             .size(kLineSize)});
}

engine::SectionDesign cutLine() {
    std::vector<ControlDesign> controls{
        engine::textBox("StockNumberField", {0, 50, 650, 220}, "StockNumber")
            .alignRight()
            .bold()
            .size(kLineSize)};
    for (int n = 1; n <= kCutCount; ++n) {
        const int x = kFirstCutX + (n - 1) * kCutStep;
        controls.push_back(engine::shape(frameOf(n), {x, 20, kCutWidth, kCutHeight}));
        controls.push_back(
            engine::textBox(cutField(n) + "Field", {x + 60, 50, kCutWidth - 120, 220}, cutField(n))
                .alignCenter()
                .size(kLineSize));
    }
    return engine::detail("Detail", kCutHeight + 60, std::move(controls));
}

/// Once per part: the stock lengths it needs, the lineal feet cut and the average yield.
engine::SectionDesign partFooter() {
    return engine::groupFooter(
        "GroupFooter1", "GroupHeader1", 480,
        {engine::line("Line2", 0, 60, kWidth, 60).weight(10),
         engine::label("Label51", {kFirstCutX, 140, 1400, 240}, "Required S/L: ").size(kSize),
         engine::textBox("StocksRequiredField", {2250, 140, 700, 240}, "StocksRequired")
             .alignRight()
             .bold()
             .size(kSize),
         engine::label("Label52", {3300, 140, 1800, 240}, "Actual Lineal Feet: ").size(kSize),
         engine::textBox("LinealTotalField", {5100, 140, 900, 240}, "LengthOfCuts")
             .sum("GroupHeader1")
             .format("#,##0")
             .alignRight()
             .bold()
             .size(kSize),
         engine::label("Label55", {6400, 140, 1400, 240}, "Average Yield:").size(kSize),
         engine::textBox("AverageYieldField", {7800, 140, 800, 240}, "Yield")
             .average("GroupHeader1")
             .format("0%")
             .alignRight()
             .bold()
             .size(kSize)});
}

engine::ReportDesign design() {
    CaptionMaker captions(kSize);
    engine::ReportDesign d{"AR2CutList",
                           "Cut List Report",
                           // The stored width runs 15 twips past Letter with 720 on both
                           // sides; the right margin gives way.
                           {.orientation = page::Orientation::Landscape,
                            .marginLeft = 720,
                            .marginTop = 720,
                            .marginRight = 705,
                            .marginBottom = 720,
                            .printWidth = kWidth},
                           {}};
    d.sections = {
        pageHeader(captions),
        engine::groupHeader("GroupHeader1", "PartNumber", 0, {}),
        stockLengthHeader(),
        cutLine(),
        engine::groupFooter("GroupFooter2", "GroupHeader2", 0, {}),
        partFooter(),
        parts::partsPageFooter(kWidth),
    };
    return d;
}

} // namespace

// ---- Handlers, in the order the engine raises them ------------------------------------------

AR2CutList::AR2CutList() : Report(design()) {
    onFormat("GroupHeader2", &AR2CutList::groupHeader2Format);
    onFormat("Detail", &AR2CutList::detailFormat);
    onFormat("PageFooter", [this] { formatPageNumberFooter(*this); });
}

const host::OptimizedCutListReportData& AR2CutList::data() const {
    return parts::reportData(*this, ReportData);
}

void AR2CutList::initialize() {
    for (const char* name :
         {"PartNumber", "Description", "StockLength", "StockNumber", "Yield", "LengthOfCuts"})
        fields().add(name);
    for (int n = 1; n <= kCutCount; ++n)
        fields().add(cutField(n));
    fields().add("StocksRequired");
}

void AR2CutList::reportStart() {
    host::runTrapped(className(), "ActiveReport_ReportStart",
                     [this] { parts::showPartsHeading(*this, data(), {.finish = "lColor"}); });
}

void AR2CutList::fetchData(bool& eof) {
    const host::CutListRow* next = parts::nextRow(data().Items, m_rowIndex, eof);
    if (next == nullptr)
        return;
    const host::CutListRow& row = *next;
    fields()["PartNumber"].setValue(row.PartNumber);
    fields()["Description"].setValue(row.Description);
    fields()["StockLength"].setValue(row.StockLength);
    fields()["StockNumber"].setValue(row.StockNumber);
    fields()["Yield"].setValue(row.Yield);
    fields()["LengthOfCuts"].setValue(row.LengthOfCuts);
    // A piece with more than eight cuts arrives as consecutive lines of the same part and
    // stock number; the first line of the report compares with 0 and "".
    m_samePiece =
        row.PartNumber == m_previousPartNumber && row.StockNumber == m_previousStockNumber;
    m_previousStockNumber = row.StockNumber;
    m_previousPartNumber = row.PartNumber;
    for (std::int32_t position = 0; position < kCutCount; ++position)
        setCutField(position, row.Cuts);
    fields()["StocksRequired"].setValue(row.StocksRequired);
}

void AR2CutList::setCutField(std::int32_t position,
                             const std::array<std::optional<host::PatternCut>, 8>& cuts) {
    const auto& cut = cuts[static_cast<std::size_t>(position)];
    fields()[cutField(position + 1)].setValue(cut ? cut->CutText : std::string());
}

void AR2CutList::groupHeader2Format() {
    if (m_rowIndex - 1 < static_cast<std::int64_t>(data().Items.size())) {
        textBox("StockLengthField").setText(toText(fields()["StockLength"].value()) + " in.");
    }
}

void AR2CutList::detailFormat() {
    host::runTrapped(className(), "Detail_Format", [this] {
        textBox("StockNumberField").setVisible(!m_samePiece);
        for (int n = 1; n <= kCutCount; ++n) {
            const Variant& cut = fields()[cutField(n)].value();
            const bool empty = cut.type() == VarType::String && cut.asString().empty();
            control(frameOf(n)).setVisible(!empty);
        }
    });
}

void AR2CutList::reportEnd() {
    exportAtReportEnd(pages(), data().JobName, UserWantsExcelExport, UserWantsPdfExport,
                      kExportSuffixes);
}

} // namespace qr::reports
