// Workbooks are read back with libfreexl, an independent reader; number formats and fonts,
// which libfreexl does not report, through the record layout reader, and the shared-string
// table by walking the records of the "Workbook" stream.
#include "platform/core/error.hpp"
#include "platform/output/workbook.hpp"
#include "support/readers/file_readers.hpp"
#include "support/readers/workbook_layout.hpp"
#include "support/temp_dir.hpp"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace qr::output {
namespace {

namespace fs = std::filesystem;
using page::Align;

page::TextItem text(int x, int y, int width, std::string shown, Align align = Align::Left) {
    page::TextItem item;
    item.box = {x, y, width, 240};
    item.align = align;
    item.text = std::move(shown);
    return item;
}

page::TextItem number(int x, int y, double value, std::string shown, std::string format) {
    page::TextItem item = text(x, y, 1440, std::move(shown), Align::Right);
    item.numericValue = value;
    item.format = std::move(format);
    return item;
}

page::Pages pagesOf(std::string title, std::vector<std::vector<page::Item>> pageItems) {
    page::Pages pages;
    pages.title = std::move(title);
    for (auto& items : pageItems) {
        pages.pages.push_back({page::kLetterWidth, page::kLetterHeight, std::move(items)});
    }
    return pages;
}

/// A cell as text: numbers as "=value", texts as they are, empty cells as "".
std::string show(const test::Sheet& sheet, unsigned row, unsigned short column) {
    const auto found = sheet.cells.find({row, column});
    if (found == sheet.cells.end())
        return "";
    if (const auto* text = std::get_if<std::string>(&found->second))
        return *text;
    std::ostringstream out;
    out << '=' << std::get<double>(found->second);
    return out.str();
}

/// The sheet, one string per row, cells separated by "|".
std::vector<std::string> rowsOf(const test::Sheet& sheet) {
    std::vector<std::string> out;
    for (unsigned r = 0; r < sheet.rows; ++r) {
        std::string line;
        for (unsigned short c = 0; c < sheet.columns; ++c)
            line += (c > 0 ? "|" : "") + show(sheet, r, c);
        out.push_back(line);
    }
    return out;
}

std::pair<unsigned, unsigned> sizeOf(const test::Sheet& sheet) {
    return {sheet.rows, sheet.columns};
}

/// What the record layout reader does not tell: the BIFF version of the first BOF, the longest
/// record of the globals and the first sheet, and the shared-string table as stored (SST, then
/// its CONTINUEs).
struct StreamWalk {
    int version = 0;
    std::size_t longestRecord = 0;
    std::vector<std::vector<std::uint8_t>> sharedStringRecords;
};

StreamWalk walkStream(const fs::path& path) {
    const std::vector<std::uint8_t> bytes = test::workbookStream(path);
    auto u16 = [&](std::size_t at) { return bytes[at] | bytes[at + 1] << 8; };
    StreamWalk walk;
    int substreams = 0;
    for (std::size_t at = 0; at + 4 <= bytes.size() && substreams < 2;) {
        const int type = u16(at);
        const std::size_t length = u16(at + 2);
        const std::size_t data = at + 4;
        walk.longestRecord = std::max(walk.longestRecord, length);
        if (at == 0 && type == 0x0809) {
            walk.version = u16(data);
        } else if (type == 0x00FC || (type == 0x003C && !walk.sharedStringRecords.empty())) {
            walk.sharedStringRecords.emplace_back(bytes.begin() + data,
                                                  bytes.begin() + data + length);
        } else if (type == 0x000A) {
            ++substreams;
        }
        at = data + length;
    }
    return walk;
}

/// The shared-string table parsed as Excel reads it. Sets `headerParted` when a string's
/// header is not followed by its first character in the same record.
struct SharedStrings {
    std::vector<std::u16string> strings;
    bool headerParted = false;
};

SharedStrings parseSharedStrings(const std::vector<std::vector<std::uint8_t>>& records) {
    SharedStrings out;
    std::size_t record = 0;
    std::size_t at = 8; // total and unique counts
    auto left = [&] { return records[record].size() - at; };
    auto byte = [&] { return records[record][at++]; };
    std::uint32_t unique =
        records[0][4] | records[0][5] << 8 | records[0][6] << 16 | records[0][7] << 24;
    for (std::uint32_t i = 0; i < unique; ++i) {
        if (left() == 0) {
            ++record;
            at = 0;
        }
        std::size_t count = byte();
        count |= std::size_t{byte()} << 8;
        bool wide = byte() & 1;
        out.headerParted = out.headerParted || (count > 0 && left() < (wide ? 2U : 1U));
        std::u16string text;
        while (text.size() < count) {
            if (left() == 0) { // continued: a fresh flags byte first
                ++record;
                at = 0;
                wide = byte() & 1;
            }
            char16_t unit = byte();
            text.push_back(wide ? char16_t(unit | byte() << 8) : unit);
        }
        out.strings.push_back(text);
    }
    return out;
}

TEST(WorkbookReadBack, NumbersComeBackAsNumbersAndTextsAsText) {
    struct Figure {
        double value;
        const char* shown;
        const char* format;
    };
    const std::vector<Figure> figures = {
        {1234.5, "$1,234.50", "$###,###.00"},                // hundredths: compact form
        {7, "7", "#,##0"},                                   // whole number
        {-12.34, "-12.34", "##,###.00"},                     // negative hundredths
        {1.0 / 3.0, ".33", "##,###.00"},                     // needs a full double
        {123456789.25, "123,456,789.25", "$###,###,###.00"}, // too large for the compact form
        {0.5, ".50", "$###,###.00"},
        {3, "Page  1 of  3", "\"Page  1 of  \"#"},
    };
    page::TextItem description = text(720, 0, 3000, "Description");
    page::TextItem amount = text(5040, 0, 1440, "Amount", Align::Right);
    description.font = amount.font = 1; // the bold heading font
    std::vector<page::Item> items = {description, amount};
    for (std::size_t i = 0; i < figures.size(); ++i) {
        int y = 300 * static_cast<int>(i + 1);
        items.push_back(text(720, y, 3000, "Line " + std::to_string(i)));
        items.push_back(number(5040, y, figures[i].value, figures[i].shown, figures[i].format));
    }
    test::TempDir dir;
    page::Pages pages = pagesOf("Figures", {items});
    pages.fonts = {{"Arial", 10}, {"Arial", 10, true}};
    writeWorkbook(pages, dir / "figures.xls");

    const auto sheets = test::readWorkbook(dir / "figures.xls");
    ASSERT_EQ(sheets.size(), 1U);
    const test::Sheet& sheet = sheets[0];
    EXPECT_EQ(sheet.name, "Figures");
    EXPECT_EQ(sizeOf(sheet), std::make_pair(unsigned(figures.size() + 1), 2U));
    EXPECT_EQ(show(sheet, 0, 0), "Description");
    EXPECT_EQ(show(sheet, 0, 1), "Amount");
    EXPECT_EQ(walkStream(dir / "figures.xls").version, 0x0600); // BIFF8
    const test::WorkbookLayout layout = test::readWorkbookLayout(dir / "figures.xls");
    ASSERT_EQ(layout.sheets.size(), 1U);
    for (std::size_t i = 0; i < figures.size(); ++i) {
        auto row = static_cast<unsigned>(i + 1);
        EXPECT_EQ(show(sheet, row, 0), "Line " + std::to_string(i));
        const auto cell = sheet.cells.find({row, 1});
        ASSERT_TRUE(cell != sheet.cells.end() && std::holds_alternative<double>(cell->second))
            << figures[i].shown << " came back as no number";
        EXPECT_EQ(std::get<double>(cell->second), figures[i].value) << figures[i].shown;
        EXPECT_EQ(layout.formatOf(layout.sheets[0], row, 1), figures[i].format)
            << figures[i].shown;
    }
    for (const auto& [at, xf] : layout.sheets[0].cellXfs) {
        EXPECT_GE(xf, 15); // the first 15 XF records are styles
        EXPECT_NE(layout.xfs.at(xf).font, 4); // XF records skip font index 4
    }
    EXPECT_TRUE(layout.fontOf(layout.sheets[0], 0, 0).bold);
    EXPECT_TRUE(layout.fontOf(layout.sheets[0], 0, 1).bold);
    EXPECT_FALSE(layout.fontOf(layout.sheets[0], 1, 0).bold);
}

TEST(WorkbookReadBack, CellsStandWhereThePagesPutThem) {
    auto page = [](int pageNumber) {
        std::string n = std::to_string(pageNumber);
        return std::vector<page::Item>{text(720, 300, 10800, "Job Glass Report", Align::Center),
                                       text(720, 720, 2000, "Part"),
                                       text(3600, 720, 2000, "Glass"),
                                       text(7200, 720, 1440, "Price", Align::Right),
                                       text(720, 1020, 2000, "P-" + n),
                                       text(3600, 1020, 2000, "1/4\" clear\ntempered"),
                                       number(7200, 1020, 10.25 * pageNumber, "", "$###,###.00"),
                                       page::LineItem{720, 1400, 11520, 1400},
                                       text(720, 14400, 4000, "Page " + n)};
    };
    test::TempDir dir;
    writeWorkbook(pagesOf("Glass", {page(1), page(2)}), dir / "glass.xls", "Glass: 1/4\"");

    const auto sheets = test::readWorkbook(dir / "glass.xls");
    ASSERT_EQ(sheets.size(), 1U);
    EXPECT_EQ(sheets[0].name, "Glass_ 1_4\"");
    EXPECT_EQ(rowsOf(sheets[0]), (std::vector<std::string>{
                               "Job Glass Report||", "Part|Glass|Price",
                               "P-1|1/4\" clear\ntempered|=10.25", "Page 1||", "Job Glass Report||",
                               "Part|Glass|Price", "P-2|1/4\" clear\ntempered|=20.5", "Page 2||"}));
}

TEST(WorkbookReadBack, SharedStringsPastOneRecordComeBackWhole) {
    // About 100 KB of distinct strings, Latin-1 and wider characters mixed, so the table
    // continues over many CONTINUE records and strings break across them at odd places.
    std::vector<std::string> strings;
    std::vector<page::Item> items;
    const std::vector<std::string> tails = {"", " clear", " — ½\" tempered", " 玻璃", " Fenêtre"};
    for (int i = 0; i < 4000; ++i) {
        std::string s = "Item " + std::to_string(i) + tails[i % tails.size()] +
                        std::string(static_cast<std::size_t>(i % 37), 'x');
        strings.push_back(s);
        items.push_back(text(720, 300 * i, 6000, s));
    }
    test::TempDir dir;
    writeWorkbook(pagesOf("Strings", {items}), dir / "strings.xls");

    const StreamWalk walk = walkStream(dir / "strings.xls");
    EXPECT_LE(walk.longestRecord, 8224U);
    EXPECT_EQ(parseSharedStrings(walk.sharedStringRecords).strings.size(), strings.size());
    const auto sheets = test::readWorkbook(dir / "strings.xls");
    ASSERT_EQ(sheets.size(), 1U);
    EXPECT_EQ(sheets[0].rows, strings.size());
    for (std::size_t i = 0; i < strings.size(); ++i) {
        ASSERT_EQ(show(sheets[0], static_cast<unsigned>(i), 0), strings[i]) << "row " << i;
    }
}

TEST(WorkbookReadBack, SharedStringHeadersStayWithTheirFirstCharacter) {
    // 191 strings of 40 characters leave exactly a header's room at the end of the SST
    // record: the next string must start in the CONTINUE record.
    std::vector<page::Item> items;
    std::vector<std::u16string> expected;
    for (int i = 0; i < 400; ++i) {
        std::string s = std::to_string(i);
        s.insert(0, 40 - s.size(), '0');
        items.push_back(text(720, 300 * i, 2000, s));
        expected.emplace_back(s.begin(), s.end());
    }
    test::TempDir dir;
    writeWorkbook(pagesOf("Strings", {items}), dir / "strings.xls");

    StreamWalk walk = walkStream(dir / "strings.xls");
    ASSERT_GE(walk.sharedStringRecords.size(), 2U);
    SharedStrings table = parseSharedStrings(walk.sharedStringRecords);
    EXPECT_FALSE(table.headerParted);
    EXPECT_EQ(table.strings, expected);
}

TEST(WorkbookReadBack, LongReportsContinueOnFurtherSheets) {
    constexpr int kRows = 70000;
    page::Pages pages = pagesOf("Cut List", {});
    for (int p = 0; p < kRows / 50; ++p) {
        std::vector<page::Item> items;
        for (int line = 0; line < 50; ++line) {
            int n = p * 50 + line;
            items.push_back(text(720, 300 * line, 2000, "Cut " + std::to_string(n)));
            // The first figure of a page needs a NUMBER record, the others fit an RK one.
            const double value = line == 0 ? n + 0.001 : n;
            items.push_back(number(5040, 300 * line, value, std::to_string(value), "#,##0"));
        }
        pages.pages.push_back({page::kLetterWidth, page::kLetterHeight, std::move(items)});
    }
    test::TempDir dir;
    writeWorkbook(pages, dir / "cuts.xls");

    const auto sheets = test::readWorkbook(dir / "cuts.xls");
    ASSERT_EQ(sheets.size(), 2U);
    EXPECT_EQ(sheets[0].name, "Cut List");
    EXPECT_EQ(sheets[1].name, "Cut List (2)");
    EXPECT_EQ(sizeOf(sheets[0]), std::make_pair(65536U, 2U));
    EXPECT_EQ(show(sheets[0], 0, 0), "Cut 0");
    EXPECT_EQ(show(sheets[0], 65535, 0), "Cut 65535");
    EXPECT_EQ(show(sheets[0], 65535, 1), "=65535");
    EXPECT_EQ(sizeOf(sheets[1]), std::make_pair(unsigned(kRows - 65536), 2U));
    EXPECT_EQ(show(sheets[1], 0, 0), "Cut 65536");
    EXPECT_EQ(show(sheets[1], kRows - 65536 - 1, 1), "=" + std::to_string(kRows - 1));
    // Each sheet stands where the sheet list says it does.
    EXPECT_EQ(test::readWorkbookLayout(dir / "cuts.xls").sheets.size(), 2U);
}

TEST(WorkbookReadBack, EmptyReportGivesAnEmptySheet) {
    test::TempDir dir;
    writeWorkbook(pagesOf("", {{}}), dir / "empty.xls");
    const auto sheets = test::readWorkbook(dir / "empty.xls");
    ASSERT_EQ(sheets.size(), 1U);
    EXPECT_EQ(sheets[0].name, "Sheet1");
    EXPECT_EQ(sizeOf(sheets[0]), std::make_pair(0U, 0U));
}

std::vector<std::string> folderListing(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

TEST(WorkbookFile, IsWrittenWholeOrNotAtAll) {
    test::TempDir dir;
    page::Pages pages = pagesOf("Report", {{text(720, 0, 1000, "new")}});

    // A missing folder: a clear error naming the path, nothing written.
    fs::path missing = dir / "no such folder" / "report.xls";
    try {
        writeWorkbook(pages, missing);
        FAIL() << "no error for a missing folder";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 75);
        EXPECT_EQ(e.source(), kWorkbookSource);
        EXPECT_NE(e.description().find(missing.string()), std::string::npos) << e.description();
        EXPECT_NE(e.description().find("No such file or directory"), std::string::npos);
    }
    EXPECT_TRUE(folderListing(dir.path()).empty());

    // A target that cannot be replaced (a folder): the error, and no temporary left behind.
    fs::create_directory(dir / "taken.xls");
    EXPECT_THROW(writeWorkbook(pages, dir / "taken.xls"), Error);
    EXPECT_EQ(folderListing(dir.path()), std::vector<std::string>{"taken.xls"});

    // An existing file is replaced by the new workbook.
    { std::ofstream(dir / "report.xls") << "old contents"; }
    writeWorkbook(pages, dir / "report.xls");
    EXPECT_EQ(folderListing(dir.path()), (std::vector<std::string>{"report.xls", "taken.xls"}));
    const auto sheets = test::readWorkbook(dir / "report.xls");
    ASSERT_EQ(sheets.size(), 1U);
    EXPECT_EQ(show(sheets[0], 0, 0), "new");
}

TEST(WorkbookFile, ExportFilterWritesToItsFileName) {
    test::TempDir dir;
    auto filter = makeWorkbookExportFilter();
    filter->setFileName((dir / "J-FinalGlass.xls").string());
    filter->exportPages(pagesOf("Final Glass", {{text(720, 0, 1000, "pane")}}));
    const auto sheets = test::readWorkbook(dir / "J-FinalGlass.xls");
    ASSERT_EQ(sheets.size(), 1U);
    EXPECT_EQ(sheets[0].name, "Final Glass");
    EXPECT_EQ(show(sheets[0], 0, 0), "pane");
}

TEST(WorkbookSheetName, FollowsExcelRules) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"Job Glass Report", "Job Glass Report"},
        {"Glass/Parts: [A*B]?\\", "Glass_Parts_ _A_B___"},
        {"'Quoted'", "Quoted"},
        {"  padded  ", "padded"},
        {"tab\there", "tabhere"},
        {"", "Sheet1"},
        {"'''", "Sheet1"},
        {"history", "history_"},
        {"A very long report title that goes on and on", "A very long report title that g"},
        {"Fenêtres et châssis vitrés — récapitulatif", "Fenêtres et châssis vitrés — ré"},
        {std::string(30, 'a') + "😀", std::string(30, 'a')}, // a pair is never split
    };
    for (const auto& [title, expected] : cases) {
        EXPECT_EQ(excelSheetName(title), expected) << title;
    }
    EXPECT_EQ(excelSheetName("Cut List Report For Job", 27), "Cut List Report For Job");
    EXPECT_EQ(excelSheetName("Cut List Report For Job 1234", 27), "Cut List Report For Job 123");
}

} // namespace
} // namespace qr::output
