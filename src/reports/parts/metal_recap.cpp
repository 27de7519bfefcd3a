#include "reports/parts/metal_recap.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/host/error_log.hpp"
#include "reports/common/page_footer.hpp"
#include "reports/parts/parts_layout.hpp"

namespace qr::reports {

namespace {

// ---- Design ---------------------------------------------------------------------------------

using engine::ControlDesign;

constexpr int kWidth = 10815;
constexpr double kSize = parts::kHeadingTextSize;
// The cut lines stand indented under their part and stock length.
constexpr int kQuantityX = 1000;
constexpr int kQuantityWidth = 900;
constexpr int kLengthX = 2100;
constexpr int kLengthWidth = 2400;

engine::SectionDesign pageHeader(CaptionMaker& captions) {
    std::vector<ControlDesign> controls;
    const int headingHeight =
        parts::addHeadingBlock(controls,
                               {.title = "Final Metal Recap Report",
                                .width = kWidth,
                                .left = {{"Vendor:", "lVendor"}, {"Job  Name:", "lJobName"}},
                                .right = {{"Phone:", "lPhone"}, {"Fax:", "lFax"}}},
                               captions);
    controls.push_back(engine::line("Line1", 0, headingHeight, kWidth, headingHeight).weight(20));
    return engine::pageHeader("PageHeader", headingHeight + 80, std::move(controls));
}

/// Part number and description, then the stock length and how many to buy, then the captions
/// of the cut lines.
engine::SectionDesign stockLengthHeader(CaptionMaker& captions) {
    std::vector<ControlDesign> controls{
        captions.bold({0, 80, 650, 240}, "Part #"),
        engine::textBox("PartNumberField", {700, 80, 1900, 240}, "PartNumber").bold().size(kSize),
        engine::textBox("DescriptionField", {2700, 80, kWidth - 2700, 240}, "Description")
            .size(kSize),
        engine::label("lStockorRandom", {0, 340, 650, 240}, "").size(kSize),
        captions({700, 340, 1250, 240}, "Stock Length:"),
        engine::textBox("StockLengthField", {2000, 340, 1400, 240}, "StockLength").size(kSize),
        captions({3600, 340, 1000, 240}, "Stock Qty:"),
        engine::textBox("StockQuantityField", {4650, 340, 800, 240}, "StockQuantity").size(kSize),
    };
    captions.setSize(parts::kLineTextSize);
    controls.push_back(
        captions.bold({kQuantityX, 620, kQuantityWidth, 200}, "Quantity").alignRight());
    controls.push_back(captions.bold({kLengthX, 620, kLengthWidth, 200}, "Length"));
    return engine::groupHeader("GroupHeader2", "StockLength", 840, std::move(controls));
}

engine::ReportDesign design() {
    CaptionMaker captions(kSize);
    engine::ReportDesign d{"ar2MetalRecap",
                           "Final Metal Recap Report",
                           // The stored width runs 15 twips past Letter with 720 on both
                           // sides; the right margin gives way.
                           {.marginLeft = 720,
                            .marginTop = 720,
                            .marginRight = 705,
                            .marginBottom = 1080,
                            .printWidth = kWidth},
                           {}};
    d.sections = {
        pageHeader(captions),
        engine::groupHeader("GroupHeader1", "PartNumber", 0, {}),
        stockLengthHeader(captions),
        engine::detail(
            "Detail", parts::kLineHeight,
            {engine::textBox("QuantityField", {kQuantityX, 0, kQuantityWidth, parts::kLineHeight},
                             "Quantity")
                 .alignRight()
                 .size(parts::kLineTextSize),
             engine::textBox("LengthStringField", {kLengthX, 0, kLengthWidth, parts::kLineHeight},
                             "LengthString")
                 .size(parts::kLineTextSize)}),
        engine::groupFooter("GroupFooter2", "GroupHeader2", 0, {}),
        engine::groupFooter("GroupFooter1", "GroupHeader1", 120,
                            {engine::line("Line2", 0, 60, kWidth, 60).weight(10)}),
        parts::partsPageFooter(kWidth),
    };
    return d;
}

} // namespace

// ---- Handlers, in the order the engine raises them ------------------------------------------

ar2MetalRecap::ar2MetalRecap() : Report(design()) {
    onFormat("GroupHeader2", &ar2MetalRecap::stockLengthHeadingFormat);
    onFormat("PageFooter", [this] { formatPageNumberFooter(*this); });
}

const host::MetalRecapReportData& ar2MetalRecap::data() const {
    return parts::reportData(*this, ReportData);
}

void ar2MetalRecap::initialize() {
    for (const char* name :
         {"Quantity", "PartNumber", "Description", "StockLength", "StockQuantity", "LengthString"})
        fields().add(name);
}

void ar2MetalRecap::reportStart() {
    host::runTrapped(className(), "ActiveReport_ReportStart",
                     [this] { parts::showPartsHeading(*this, data(), {}); });
}

void ar2MetalRecap::fetchData(bool& eof) {
    const host::MetalRecapItem* row = parts::nextRow(data().Items, m_rowIndex, eof);
    if (row == nullptr)
        return;
    const host::MetalRecapItem& item = *row;
    fields()["Quantity"].setValue(item.Quantity);
    fields()["PartNumber"].setValue(item.PartNumber);
    fields()["Description"].setValue(item.Description);
    fields()["StockLength"].setValue(item.StockLength);
    fields()["StockQuantity"].setValue(item.StockQuantity);
    fields()["LengthString"].setValue(item.LengthString);
}

// The stock-length heading shows the group's stock length in inches ("252 in."), read as a
// single-precision number. The part heading's handler set it in the original design; it runs
// here as each stock-length heading formats, so a part's second stock length shows its own.
void ar2MetalRecap::stockLengthHeadingFormat() {
    host::runTrapped(className(), "GroupHeader1_Format", [this] {
        const float stockLength = toSingle(fields()["StockLength"].value());
        textBox("StockLengthField").setText(toText(Variant(stockLength)) + " in.");
    });
}

} // namespace qr::reports
