// FinalGlassAR2: the landscape priced glass list, 10 inches of line, with the thickness on
// each line and the minimum block area check.
#include "reports/glass/final_glass_layout.hpp"
#include "reports/glass/final_glass_report.hpp"

namespace qr::reports {

namespace {

using engine::ControlKind;
using page::Align;

const final_glass::Layout kLayout{
    .name = "FinalGlassAR2",
    .landscape = true,
    .prices = true,
    .descriptionLabel = true,
    .thicknessControl = "Field22",
    .grandTotalCaption = "Final Glass Totals:",
    .columns =
        {
            // control, kind, field, format, x, width, align, headings
            {"Field1", ControlKind::TextBox, "iQuantity", "", 0, 560, Align::Right, {"Qty"}},
            {"Field2", ControlKind::TextBox, "sGlassType", "", 660, 1600, Align::Left, {"Type"}},
            {"Field17",
             ControlKind::TextBox,
             "sCategory",
             "",
             2340,
             1500,
             Align::Left,
             {"Category"}},
            {"Field21",
             ControlKind::TextBox,
             "pthickness",
             "0.#####\"",
             3920,
             700,
             Align::Right,
             {"Glass", "Thick"}},
            {"Field4", ControlKind::TextBox, "sWidth", "", 4700, 1000, Align::Right, {"Width"}},
            {"Field5", ControlKind::TextBox, "sHeight", "", 5780, 1000, Align::Right, {"Height"}},
            {"Field6",
             ControlKind::TextBox,
             "SBLOCKSIZE",
             "",
             6860,
             1000,
             Align::Right,
             {"Block", "Size"}},
            {"CheckBox1", ControlKind::CheckBox, "brake", "", 7940, 520, Align::Center, {"Rake?"}},
            {"Field20",
             ControlKind::TextBox,
             "pminblockarea",
             "#,##0.00",
             8540,
             800,
             Align::Right,
             {"Min", "Area"}},
            {"chkMinArea",
             ControlKind::CheckBox,
             "bMinOK",
             "",
             9420,
             520,
             Align::Center,
             {"Min", "Area", "OK?"}},
            {"Field9",
             ControlKind::TextBox,
             "PSQRFT",
             "##,###.00",
             10020,
             800,
             Align::Right,
             {"Area", "Each"}},
            {"Field8",
             ControlKind::TextBox,
             "pPrice",
             "$#,##0.00",
             10900,
             900,
             Align::Right,
             {"Area", "Price"}},
            {"lAreaSubTotal",
             ControlKind::Label,
             "",
             "",
             11880,
             1000,
             Align::Right,
             {"Area", "Total"}},
            {"Field10",
             ControlKind::TextBox,
             "pPriceTotal",
             "$#,##0.00",
             12960,
             1440,
             Align::Right,
             {"Totals"}},
        },
};

} // namespace

FinalGlassAR2::FinalGlassAR2()
    : FinalGlassReport(final_glass::buildDesign(kLayout),
                       {.prices = true,
                        .minimumAreaCheck = true,
                        .descriptionLabel = true,
                        .suffixes = kExportSuffixes}) {}

} // namespace qr::reports
