// FinalGlassARNP: the portrait glass list without prices.
#include "reports/glass/final_glass_layout.hpp"
#include "reports/glass/final_glass_report.hpp"

namespace qr::reports {

namespace {

using engine::ControlKind;
using page::Align;

const final_glass::Layout kLayout{
    .name = "FinalGlassARNP",
    .landscape = false,
    .prices = false,
    .descriptionLabel = true,
    .thicknessControl = "Field20",
    .grandTotalCaption = "Final Glass Total:",
    .columns =
        {
            // control, kind, field, format, x, width, align, headings
            {"Field1", ControlKind::TextBox, "iQuantity", "", 0, 600, Align::Right, {"Units"}},
            {"Field2", ControlKind::TextBox, "sGlassType", "", 700, 1800, Align::Left, {"Type"}},
            {"Field17", ControlKind::TextBox, "sCategory", "", 2580, 1600, Align::Left, {"Type"}},
            {"Field4", ControlKind::TextBox, "sWidth", "", 4260, 1100, Align::Right, {"Width"}},
            {"Field5", ControlKind::TextBox, "sHeight", "", 5440, 1100, Align::Right, {"Height"}},
            {"Field6",
             ControlKind::TextBox,
             "SBLOCKSIZE",
             "",
             6620,
             1100,
             Align::Right,
             {"Block", "Size"}},
            {"CheckBox1", ControlKind::CheckBox, "brake", "", 7800, 600, Align::Center, {"Rake?"}},
            {"Field9",
             ControlKind::TextBox,
             "PSQRFT",
             "##,###.00",
             8480,
             1000,
             Align::Right,
             {"Area", "Each"}},
            {"lAreaSubTotal",
             ControlKind::Label,
             "",
             "",
             9560,
             1240,
             Align::Right,
             {"Area", "Total"}},
        },
};

} // namespace

FinalGlassARNP::FinalGlassARNP()
    : FinalGlassReport(final_glass::buildDesign(kLayout),
                       {.prices = false,
                        .minimumAreaCheck = false,
                        .descriptionLabel = true,
                        .suffixes = kExportSuffixes}) {}

} // namespace qr::reports
