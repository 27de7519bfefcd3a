// Workbooks are read back with libfreexl, an independent reader; number formats, which
// libfreexl does not report, are checked by walking the records of the "Workbook" stream.
#include "platform/core/error.hpp"
#include "platform/output/workbook.hpp"
#include "support/temp_dir.hpp"

#include <cstring>
#include <freexl.h>
#include <fstream>
#include <gsf/gsf-infile-msole.h>
#include <gsf/gsf-infile.h>
#include <gsf/gsf-input-stdio.h>
#include <gsf/gsf-input.h>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <stdexcept>

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

/// A workbook opened with libfreexl.
class FreeXl {
  public:
    explicit FreeXl(const fs::path& path) {
        int rc = freexl_open(path.c_str(), &m_handle);
        // libfreexl 1.0.6 can report success with no handle on a malformed string table.
        if (rc != FREEXL_OK || m_handle == nullptr) {
            throw std::runtime_error("freexl_open failed with " + std::to_string(rc));
        }
    }
    ~FreeXl() { freexl_close(m_handle); }
    FreeXl(const FreeXl&) = delete;
    FreeXl& operator=(const FreeXl&) = delete;

    unsigned info(unsigned short what) const {
        unsigned value = 0;
        EXPECT_EQ(freexl_get_info(m_handle, what, &value), FREEXL_OK);
        return value;
    }
    std::string sheetName(unsigned short sheet) const {
        const char* name = nullptr;
        EXPECT_EQ(freexl_get_worksheet_name(m_handle, sheet, &name), FREEXL_OK);
        return name != nullptr ? name : "";
    }
    /// Selects the sheet and returns its row and column counts.
    std::pair<unsigned, unsigned> select(unsigned short sheet) const {
        EXPECT_EQ(freexl_select_active_worksheet(m_handle, sheet), FREEXL_OK);
        unsigned rows = 0;
        unsigned short columns = 0;
        EXPECT_EQ(freexl_worksheet_dimensions(m_handle, &rows, &columns), FREEXL_OK);
        return {rows, columns};
    }
    FreeXL_CellValue cell(unsigned row, unsigned short column) const {
        FreeXL_CellValue value{};
        EXPECT_EQ(freexl_get_cell_value(m_handle, row, column, &value), FREEXL_OK);
        return value;
    }
    /// The cell as text: numbers as "=value", texts as they are, empty cells as "".
    std::string show(unsigned row, unsigned short column) const {
        FreeXL_CellValue value = cell(row, column);
        switch (value.type) {
        case FREEXL_CELL_INT:
            return "=" + std::to_string(value.value.int_value);
        case FREEXL_CELL_DOUBLE: {
            std::ostringstream out;
            out << '=' << value.value.double_value;
            return out.str();
        }
        case FREEXL_CELL_TEXT:
        case FREEXL_CELL_SST_TEXT:
            return value.value.text_value;
        case FREEXL_CELL_NULL:
            return "";
        }
        return "?type " + std::to_string(value.type);
    }
    /// The selected sheet, one string per row, cells separated by "|".
    std::vector<std::string> rows() const {
        unsigned rowCount = 0;
        unsigned short columnCount = 0;
        freexl_worksheet_dimensions(m_handle, &rowCount, &columnCount);
        std::vector<std::string> out;
        for (unsigned r = 0; r < rowCount; ++r) {
            std::string line;
            for (unsigned short c = 0; c < columnCount; ++c) {
                line += (c > 0 ? "|" : "") + show(r, c);
            }
            out.push_back(line);
        }
        return out;
    }

  private:
    const void* m_handle = nullptr;
};

/// What the records of the globals and the first sheet say: the number format pattern of every
/// numeric cell by (row, column) (cell -> XF -> FORMAT, or Excel's built-in table below 164),
/// the weight of every cell's font (cell -> XF -> FONT, where index 4 does not exist) and the
/// shared-string table as stored.
struct StreamWalk {
    std::map<std::pair<int, int>, std::string> patterns;
    std::map<std::pair<int, int>, int> fontWeights;
    std::size_t longestRecord = 0;
    int lowestCellXf = 1 << 16;
    std::vector<std::vector<std::uint8_t>> sharedStringRecords; // SST, then its CONTINUEs
};

StreamWalk walkStream(const fs::path& path) {
    GError* error = nullptr;
    GsfInput* file = gsf_input_stdio_new(path.c_str(), &error);
    EXPECT_NE(file, nullptr);
    GsfInfile* ole = gsf_infile_msole_new(file, &error);
    EXPECT_NE(ole, nullptr);
    GsfInput* stream = gsf_infile_child_by_name(ole, "Workbook");
    EXPECT_NE(stream, nullptr);
    auto size = static_cast<std::size_t>(gsf_input_size(stream));
    std::vector<std::uint8_t> bytes(size);
    gsf_input_read(stream, size, bytes.data());
    g_object_unref(stream);
    g_object_unref(ole);
    g_object_unref(file);

    auto u16 = [&](std::size_t at) { return bytes[at] | bytes[at + 1] << 8; };
    const std::map<int, std::string> builtIn = {
        {0, "General"}, {2, "0.00"}, {3, "#,##0"}, {4, "#,##0.00"}};
    std::map<int, std::string> formats;
    StreamWalk walk;
    std::vector<int> xfFormats;
    std::vector<int> xfFonts;
    std::vector<int> fontWeights;
    auto noteFont = [&](std::size_t data) {
        int font = xfFonts.at(u16(data + 4));
        EXPECT_NE(font, 4);
        walk.fontWeights[{u16(data), u16(data + 2)}] = fontWeights.at(font < 4 ? font : font - 1);
    };
    int substreams = 0;
    for (std::size_t at = 0; at + 4 <= size && substreams < 2;) {
        int type = u16(at);
        std::size_t length = u16(at + 2);
        std::size_t data = at + 4;
        walk.longestRecord = std::max(walk.longestRecord, length);
        if (type == 0x041E) { // FORMAT: id, length, flags, characters (all ASCII here)
            formats[u16(data)] =
                std::string(bytes.begin() + data + 5, bytes.begin() + data + 5 + u16(data + 2));
        } else if (type == 0x0031) {
            fontWeights.push_back(u16(data + 6));
        } else if (type == 0x00E0) {
            xfFonts.push_back(u16(data));
            xfFormats.push_back(u16(data + 2));
        } else if (type == 0x027E || type == 0x0203) {
            int xf = u16(data + 4);
            walk.lowestCellXf = std::min(walk.lowestCellXf, xf);
            noteFont(data);
            int id = xfFormats.at(xf);
            walk.patterns[{u16(data), u16(data + 2)}] = id < 164 ? builtIn.at(id) : formats.at(id);
        } else if (type == 0x00FD) {
            walk.lowestCellXf = std::min(walk.lowestCellXf, u16(data + 4));
            noteFont(data);
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

    FreeXl book(dir / "figures.xls");
    EXPECT_EQ(book.info(FREEXL_BIFF_VERSION), FREEXL_BIFF_VER_8);
    EXPECT_EQ(book.info(FREEXL_BIFF_SHEET_COUNT), 1U);
    EXPECT_EQ(book.sheetName(0), "Figures");
    EXPECT_EQ(book.select(0), std::make_pair(unsigned(figures.size() + 1), 2U));
    EXPECT_EQ(book.show(0, 0), "Description");
    EXPECT_EQ(book.show(0, 1), "Amount");
    for (std::size_t i = 0; i < figures.size(); ++i) {
        auto row = static_cast<unsigned>(i + 1);
        EXPECT_EQ(book.show(row, 0), "Line " + std::to_string(i));
        FreeXL_CellValue cell = book.cell(row, 1);
        ASSERT_TRUE(cell.type == FREEXL_CELL_INT || cell.type == FREEXL_CELL_DOUBLE)
            << figures[i].shown << " came back as type " << int(cell.type);
        double value =
            cell.type == FREEXL_CELL_INT ? cell.value.int_value : cell.value.double_value;
        EXPECT_EQ(value, figures[i].value) << figures[i].shown;
    }

    StreamWalk walk = walkStream(dir / "figures.xls");
    EXPECT_GE(walk.lowestCellXf, 15); // the first 15 XF records are styles
    EXPECT_EQ(walk.fontWeights[std::pair(0, 0)], 700);
    EXPECT_EQ(walk.fontWeights[std::pair(0, 1)], 700);
    EXPECT_EQ(walk.fontWeights[std::pair(1, 0)], 400);
    for (std::size_t i = 0; i < figures.size(); ++i) {
        EXPECT_EQ(walk.patterns[std::pair(int(i + 1), 1)], figures[i].format) << figures[i].shown;
    }
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

    FreeXl book(dir / "glass.xls");
    EXPECT_EQ(book.sheetName(0), "Glass_ 1_4\"");
    book.select(0);
    EXPECT_EQ(book.rows(), (std::vector<std::string>{
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

    EXPECT_LE(walkStream(dir / "strings.xls").longestRecord, 8224U);
    FreeXl book(dir / "strings.xls");
    EXPECT_EQ(book.info(FREEXL_BIFF_STRING_COUNT), strings.size());
    EXPECT_EQ(book.select(0).first, strings.size());
    for (std::size_t i = 0; i < strings.size(); ++i) {
        ASSERT_EQ(book.show(static_cast<unsigned>(i), 0), strings[i]) << "row " << i;
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
            items.push_back(number(5040, 300 * line, n, std::to_string(n), "#,##0"));
        }
        pages.pages.push_back({page::kLetterWidth, page::kLetterHeight, std::move(items)});
    }
    test::TempDir dir;
    writeWorkbook(pages, dir / "cuts.xls");

    FreeXl book(dir / "cuts.xls");
    ASSERT_EQ(book.info(FREEXL_BIFF_SHEET_COUNT), 2U);
    EXPECT_EQ(book.sheetName(0), "Cut List");
    EXPECT_EQ(book.sheetName(1), "Cut List (2)");
    EXPECT_EQ(book.select(0), std::make_pair(65536U, 2U));
    EXPECT_EQ(book.show(0, 0), "Cut 0");
    EXPECT_EQ(book.show(65535, 0), "Cut 65535");
    EXPECT_EQ(book.show(65535, 1), "=65535");
    EXPECT_EQ(book.select(1), std::make_pair(unsigned(kRows - 65536), 2U));
    EXPECT_EQ(book.show(0, 0), "Cut 65536");
    EXPECT_EQ(book.show(kRows - 65536 - 1, 1), "=" + std::to_string(kRows - 1));
}

TEST(WorkbookReadBack, EmptyReportGivesAnEmptySheet) {
    test::TempDir dir;
    writeWorkbook(pagesOf("", {{}}), dir / "empty.xls");
    FreeXl book(dir / "empty.xls");
    EXPECT_EQ(book.sheetName(0), "Sheet1");
    EXPECT_EQ(book.select(0), std::make_pair(0U, 0U));
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
    FreeXl book(dir / "report.xls");
    book.select(0);
    EXPECT_EQ(book.show(0, 0), "new");
}

TEST(WorkbookFile, ExportFilterWritesToItsFileName) {
    test::TempDir dir;
    auto filter = makeWorkbookExportFilter();
    filter->setFileName((dir / "J-FinalGlass.xls").string());
    filter->exportPages(pagesOf("Final Glass", {{text(720, 0, 1000, "pane")}}));
    FreeXl book(dir / "J-FinalGlass.xls");
    EXPECT_EQ(book.sheetName(0), "Final Glass");
    book.select(0);
    EXPECT_EQ(book.show(0, 0), "pane");
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
