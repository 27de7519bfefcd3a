// Figures a handler shows through a number format keep their number and format on the printed
// item, for outputs that hold numbers; and every printed text and check box says whether it
// stood in the body or in the page header or footer.
#include "platform/core/convert.hpp"
#include "platform/core/system_formats.hpp"
#include "platform/engine/engine_test_support.hpp"

#include <gtest/gtest.h>
#include <iomanip>
#include <map>
#include <set>
#include <sstream>

namespace qr::engine::test {
namespace {

using V = std::vector<Variant>;

ReportDesign figuresDesign() {
    return designOf("Figures",
                    {pageHeader("PageHeader", 300, {label("Title", {0, 0, 4000, 240}, "Figures")}),
                     detail("Detail", 300,
                            {label("lFigure", {0, 0, 2000, 240}, "xx").alignRight(),
                             textBox("Box", {2100, 0, 2000, 240}, "n").format("0.0"),
                             checkBox("Check", {4200, 0, 300, 240}, "")}),
                     pageFooter("PageFooter", 300,
                                {textBox("txtPageNumber", {0, 0, 3000, 240}).pageCount(),
                                 checkBox("Printed", {3100, 0, 300, 240}, "")})});
}

/// The figure label's item on every detail line: its text, and "=value format" when it
/// carries a number.
std::vector<std::string> figures(const page::Pages& pages, const std::string& control) {
    std::vector<std::string> shown;
    for (const page::Page& page : pages.pages) {
        for (const page::TextItem& t : textsOf(page, control)) {
            std::ostringstream line;
            line << std::setprecision(15) << t.text;
            if (t.numericValue)
                line << " =" << *t.numericValue << " " << t.format;
            shown.push_back(line.str());
        }
    }
    return shown;
}

TEST(ShownNumbers, LabelsAndTextBoxesKeepTheNumberTheyShow) {
    setSystemFormats(SystemFormats("en_US"));
    struct Case {
        Variant value;
        const char* format;
        const char* printed; // text, then " =number format" when the item holds a number
    };
    const std::vector<Case> cases = {
        // Host arithmetic is shown (and kept) at fifteen digits: no binary noise.
        {0.1 + 0.2, "$###,###.00", "$.30 =0.3 $###,###.00"},
        // A single-precision total keeps seven digits, as printed.
        {100000.07f, "$###,###.00", "$100,000.10 =100000.1 $###,###.00"},
        {Variant(Currency::fromDouble(1234.5)), "Currency", "$1,234.50 =1234.5 Currency"},
        {std::int32_t{212}, "", "212 =212 "},
        {3187.45, "", "3187.45 =3187.45 "},
        {-3.0, "##,###.00", "-3.00 =-3 ##,###.00"},
        // Number text is a number; other text, Null and Empty show as text, no number.
        {Variant(std::string("12.5")), "##,###.00", "12.50 =12.5 ##,###.00"},
        {Variant(std::string("48 1/4")), "##,###.00", "48 1/4"},
        {Variant::null(), "##,###.00", ""},
        {Variant(), "##,###.00", ""},
    };
    std::vector<V> rows;
    for (std::size_t i = 0; i < cases.size(); ++i)
        rows.push_back(V{std::int32_t(i)});
    ListReport report(figuresDesign(), {"n"}, rows);
    report.onFormat("Detail", [&] {
        const Case& c = cases[static_cast<std::size_t>(toLong(report.fields()["n"].value()))];
        report.label("lFigure").setNumber(c.value, c.format);
    });
    report.run();
    std::vector<std::string> expected;
    for (const Case& c : cases) {
        if (*c.printed != '\0')
            expected.push_back(c.printed); // an empty text prints no item
    }
    EXPECT_EQ(figures(report.pages(), "lFigure"), expected);
}

TEST(ShownNumbers, ATextSetLaterAndABoundValueReplaceTheNumber) {
    ListReport report(figuresDesign(), {"n"}, {V{1.0}, V{2.0}, V{3.0}, V{4.0}});
    int row = 0;
    report.onFormat("Detail", [&] {
        ++row;
        engine::Label& figure = report.label("lFigure");
        engine::TextBox& box = report.textBox("Box");
        figure.setNumber(row * 10.0, "#,##0");
        if (row == 2)
            figure.setCaption("n/a"); // a caption after a number: text only
        if (row == 3)
            box.setNumber(row * 100.0, "$#,##0.00"); // this row only
        if (row == 4) {
            box.setNumber(1.0, "0");
            box.setText("set as text");
        }
    });
    report.run();
    EXPECT_EQ(figures(report.pages(), "lFigure"),
              (std::vector<std::string>{"10 =10 #,##0", "n/a", "30 =30 #,##0", "40 =40 #,##0"}));
    // The box shows its bound value through its own format, except on the rows it was set.
    EXPECT_EQ(figures(report.pages(), "Box"),
              (std::vector<std::string>{"1.0 =1 0.0", "2.0 =2 0.0", "$300.00 =300 $#,##0.00",
                                        "set as text"}));
}

TEST(PageBands, ItemsSayWhetherThePageHeaderBodyOrFooterPrintedThem) {
    ListReport report(figuresDesign(), {"n"}, {V{1.0}, V{2.0}});
    report.onFormat("PageFooter", [&] { report.checkBox("Printed").setChecked(true); });
    report.run();
    std::map<std::string, std::set<page::PageBand>> bands;
    for (const page::Item& item : report.pages().pages.at(0).items) {
        if (const auto* text = std::get_if<page::TextItem>(&item))
            bands[text->control].insert(text->pageBand);
        if (const auto* check = std::get_if<page::CheckBoxItem>(&item))
            bands[check->control].insert(check->pageBand);
    }
    using page::PageBand;
    const std::map<std::string, std::set<PageBand>> expected = {
        {"Title", {PageBand::Header}},
        {"lFigure", {PageBand::Body}},
        {"Box", {PageBand::Body}},
        {"Check", {PageBand::Body}},
        {"txtPageNumber", {PageBand::Footer}},
        {"Printed", {PageBand::Footer}}};
    EXPECT_EQ(bands, expected);
}

} // namespace
} // namespace qr::engine::test
