// FinalGlassARNP2: the landscape glass list without prices, with the thickness on each line
// and the minimum block area check.
#include "reports/glass/final_glass_layout.hpp"
#include "reports/glass/final_glass_report.hpp"

namespace qr::reports {

namespace {

using engine::ControlKind;
using page::Align;

const final_glass::Layout kLayout{
    .name = "FinalGlassARNP2",
    .landscape = true,
    .prices = false,
    .descriptionLabel = true,
    .thicknessControl = "Field22",
    .grandTotalCaption = "Final Glass Total:",
    .columns =
        {
            // control, kind, field, format, x, width, align, headings
            {"Field1", ControlKind::TextBox, "iQuantity", "", 0, 600, Align::Right, {"Units"}},
            {"Field2", ControlKind::TextBox, "sGlassType", "", 700, 2000, Align::Left, {"Type"}},
            {"Field17",
             ControlKind::TextBox,
             "sCategory",
             "",
             2780,
             1800,
             Align::Left,
             {"Category"}},
            {"Field21",
             ControlKind::TextBox,
             "pthickness",
             "0.#####\"",
             4660,
             800,
             Align::Right,
             {"Glass", "Thick"}},
            {"Field4", ControlKind::TextBox, "sWidth", "", 5540, 1200, Align::Right, {"Width"}},
            {"Field5", ControlKind::TextBox, "sHeight", "", 6820, 1200, Align::Right, {"Height"}},
            {"Field6",
             ControlKind::TextBox,
             "SBLOCKSIZE",
             "",
             8100,
             1200,
             Align::Right,
             {"Block", "Size"}},
            {"CheckBox1", ControlKind::CheckBox, "brake", "", 9380, 600, Align::Center, {"Rake?"}},
            {"Field20",
             ControlKind::TextBox,
             "pminblockarea",
             "#,##0.00",
             10060,
             1000,
             Align::Right,
             {"Min", "Area"}},
            {"chkMinArea",
             ControlKind::CheckBox,
             "bMinOK",
             "",
             11140,
             600,
             Align::Center,
             {"Min", "Area?", "OK?"}},
            {"Field9",
             ControlKind::TextBox,
             "PSQRFT",
             "##,###.00",
             11820,
             1100,
             Align::Right,
             {"Area", "Each"}},
            {"lAreaSubTotal",
             ControlKind::Label,
             "",
             "",
             13000,
             1400,
             Align::Right,
             {"Area", "Total"}},
        },
};

} // namespace

FinalGlassARNP2::FinalGlassARNP2()
    : FinalGlassReport(final_glass::buildDesign(kLayout),
                       {.prices = false,
                        .minimumAreaCheck = true,
                        .descriptionLabel = true,
                        .suffixes = kExportSuffixes}) {}

} // namespace qr::reports
