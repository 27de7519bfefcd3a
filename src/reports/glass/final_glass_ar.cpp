// FinalGlassAR: the portrait priced glass list, 7.5 inches of line.
#include "reports/glass/final_glass_layout.hpp"
#include "reports/glass/final_glass_report.hpp"

namespace qr::reports {

namespace {

using engine::ControlKind;
using page::Align;

const final_glass::Layout kLayout{
    .name = "FinalGlassAR",
    .landscape = false,
    .prices = true,
    .descriptionLabel = false,
    .thicknessControl = "Field20",
    .grandTotalCaption = "Final Glass Totals:",
    .columns =
        {
            // control, kind, field, format, x, width, align, headings
            {"Field1", ControlKind::TextBox, "iQuantity", "", 0, 500, Align::Right, {"Qty"}},
            {"Field2", ControlKind::TextBox, "sGlassType", "", 600, 1500, Align::Left, {"Type"}},
            {"Field17",
             ControlKind::TextBox,
             "sCategory",
             "",
             2160,
             1300,
             Align::Left,
             {"Category"}},
            {"Field4", ControlKind::TextBox, "sWidth", "", 3520, 860, Align::Right, {"Width"}},
            {"Field5", ControlKind::TextBox, "sHeight", "", 4440, 860, Align::Right, {"Height"}},
            {"Field6",
             ControlKind::TextBox,
             "SBLOCKSIZE",
             "",
             5360,
             940,
             Align::Right,
             {"Block", "Size"}},
            {"CheckBox1", ControlKind::CheckBox, "brake", "", 6360, 520, Align::Center, {"Rake?"}},
            {"Field9",
             ControlKind::TextBox,
             "PSQRFT",
             "##,###.00",
             6940,
             760,
             Align::Right,
             {"Area", "Each"}},
            {"Field8",
             ControlKind::TextBox,
             "pPrice",
             "$#,##0.00",
             7760,
             880,
             Align::Right,
             {"Area", "Price"}},
            {"lAreaSubTotal",
             ControlKind::Label,
             "",
             "",
             8700,
             940,
             Align::Right,
             {"Area", "Total"}},
            {"Field10",
             ControlKind::TextBox,
             "pPriceTotal",
             "$#,##0.00",
             9700,
             1100,
             Align::Right,
             {"Totals"}},
        },
};

} // namespace

FinalGlassAR::FinalGlassAR()
    : FinalGlassReport(final_glass::buildDesign(kLayout),
                       {.prices = true,
                        .minimumAreaCheck = false,
                        .descriptionLabel = false,
                        .suffixes = kExportSuffixes}) {}

} // namespace qr::reports
