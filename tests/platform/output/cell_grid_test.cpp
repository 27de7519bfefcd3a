#include "platform/output/cell_grid.hpp"
#include "platform/output/sheet_footer.hpp"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <sstream>

namespace qr::output {
namespace {

using page::Align;

/// A text as the engine prints it in Arial 10: a character some 100 twips wide.
page::TextItem text(int x, int y, int width, std::string shown, Align align = Align::Left) {
    page::TextItem item;
    item.box = {x, y, width, 240};
    item.align = align;
    const int printed = 100 * static_cast<int>(shown.size());
    const int left = align == Align::Left    ? x
                     : align == Align::Right ? x + width - printed
                                             : x + (width - printed) / 2;
    item.runs.push_back({left, y + 190, printed, shown});
    item.text = std::move(shown);
    return item;
}

page::TextItem number(int x, int y, int width, double value, std::string shown,
                      std::string format = "#,##0.00") {
    page::TextItem item = text(x, y, width, std::move(shown), Align::Right);
    item.numericValue = value;
    item.format = std::move(format);
    return item;
}

page::Pages pagesOf(std::vector<std::vector<page::Item>> pageItems) {
    page::Pages pages;
    for (auto& items : pageItems) {
        pages.pages.push_back({page::kLetterWidth, page::kLetterHeight, std::move(items)});
    }
    return pages;
}

/// The grid as text, one string per row: cells separated by "|", numbers as "=value".
std::vector<std::string> rendered(const CellGrid& grid) {
    std::vector<std::string> rows;
    for (std::uint32_t r = 0; r < grid.rowCount(); ++r) {
        std::ostringstream row;
        for (std::uint16_t c = 0; c < grid.columns.size(); ++c) {
            row << (c > 0 ? "|" : "");
            if (const Cell* cell = grid.find(r, c)) {
                if (cell->kind == CellKind::Number) {
                    row << '=' << cell->number;
                } else {
                    row << grid.textOf(*cell);
                }
            }
        }
        rows.push_back(row.str());
    }
    return rows;
}

struct LayoutCase {
    const char* name;
    std::vector<page::Item> items;
    std::vector<std::string> expected;
};

TEST(CellGridLayout, PlacesTextsByTheirPositions) {
    const std::vector<LayoutCase> cases = {
        {"left edges within the tolerance share a column",
         {text(720, 0, 2000, "Part"), text(3000, 0, 800, "Qty"), text(740, 300, 2000, "A-100"),
          text(3050, 300, 800, "12")},
         {"Part|Qty", "A-100|12"}},
        {"left edges further apart make two columns",
         {text(720, 0, 1000, "a"), text(800, 300, 1000, "b")},
         {"a|", "|b"}},
        {"tops within the tolerance share a row, further apart start a new one",
         {text(720, 0, 1000, "a"), text(3000, 50, 1000, "b"), text(720, 120, 1000, "c")},
         {"a|b", "c|"}},
        {"a row keeps left-to-right order whatever the drawing order",
         {text(5000, 0, 1000, "third"), text(720, 0, 1000, "first"), text(3000, 0, 1000, "second")},
         {"first|second|third"}},
        {"right-aligned figures join their heading by the right edge",
         {text(720, 0, 2000, "Part"), text(5000, 0, 1000, "Amount", Align::Right),
          text(720, 300, 2000, "A"), number(5200, 300, 800, 1, "1.00"), text(720, 600, 2000, "B"),
          number(5200, 600, 800, 2, "2.00")},
         {"Part|Amount", "A|=1", "B|=2"}},
        {"a wide total box joins the figures above it",
         {text(720, 0, 2000, "A"), number(5000, 0, 1000, 1, "1.00"), text(720, 300, 2000, "B"),
          number(5000, 300, 1000, 2, "2.00"), text(3000, 600, 600, "Total"),
          number(3600, 600, 2400, 3, "3.00")},
         {"A||=1", "B||=2", "|Total|=3"}},
        {"centred texts line up by their centres",
         {text(2000, 0, 2000, "Heading", Align::Center), text(2500, 300, 1000, "x", Align::Center),
          text(2500, 600, 1000, "y", Align::Center), text(720, 600, 1000, "left")},
         {"|Heading", "|x", "left|y"}},
        {"a centred title starting with a date on its row moves to the column under its centre",
         {text(720, 0, 2000, "11/22/2026"), text(720, 0, 10800, "Job Glass Report", Align::Center),
          text(720, 300, 2000, "Part"), text(3000, 300, 2000, "Glass"),
          text(7200, 300, 1440, "Price", Align::Right)},
         {"11/22/2026|Job Glass Report|", "Part|Glass|Price"}},
        {"with no free column under its centre it gets a column of its own",
         {text(720, 0, 2000, "11/22/2026"), text(720, 0, 10800, "Job Glass Report", Align::Center),
          text(720, 300, 2000, "Part")},
         {"11/22/2026|Job Glass Report", "Part|"}},
        {"a right edge does not pull a text into a column busy on its row",
         {text(720, 0, 1000, "a"), text(3000, 0, 1000, "b", Align::Right),
          text(720, 300, 1000, "c"), text(3500, 300, 500, "d", Align::Right),
          text(3000, 300, 400, "e")},
         {"a||b", "c|e|d"}},
        {"only visible texts and checked boxes make cells",
         {page::CheckBoxItem{{720, 0, 200, 200}, true, "CheckBox1"},
          page::CheckBoxItem{{720, 300, 200, 200}, false, "CheckBox2"},
          page::LineItem{720, 600, 11520, 600}, page::RectItem{{720, 900, 5000, 1000}},
          text(720, 1200, 1000, "  "), text(720, 1500, 1000, "z")},
         {"X", "z"}},
        {"texts that land in one cell are joined, a figure's too",
         {text(720, 0, 1000, "Job"),
          [] {
              page::TextItem figure = number(740, 0, 500, 42, "42");
              figure.align = Align::Left;
              return figure;
          }()},
         {"Job 42"}},
    };
    for (const LayoutCase& c : cases) {
        EXPECT_EQ(rendered(buildCellGrid(pagesOf({c.items}))), c.expected) << c.name;
    }
}

TEST(CellGridLayout, PagesFollowOneAnotherInOrder) {
    auto pageWith = [](const std::string& heading, const std::string& value) {
        return std::vector<page::Item>{text(720, 720, 3000, heading), text(720, 1020, 3000, value),
                                       text(6000, 14000, 2000, "Page footer")};
    };
    CellGrid grid = buildCellGrid(pagesOf({pageWith("Page 1", "a"), pageWith("Page 2", "b")}));
    EXPECT_EQ(rendered(grid), (std::vector<std::string>{"Page 1|", "a|", "|Page footer", "Page 2|",
                                                        "b|", "|Page footer"}));
}

TEST(CellGridLayout, ColumnsAreSizedByTheirSpacingAndTheLastByItsTexts) {
    CellGrid grid = buildCellGrid(pagesOf({{text(720, 0, 1000, "a"), text(2160, 0, 1000, "b"),
                                            text(5040, 0, 9000, "a memo's box, wide")}}));
    ASSERT_EQ(grid.columns.size(), 3U);
    EXPECT_EQ(grid.columns[0].left, 720);
    EXPECT_EQ(grid.columns[0].width, 1440);
    EXPECT_EQ(grid.columns[1].width, 2880);
    // As wide as its text (18 characters of 100 twips), not as its box.
    EXPECT_GE(grid.columns[2].width, 1800);
    EXPECT_LT(grid.columns[2].width, 9000 / 2);
}

TEST(CellGridLayout, AColumnStartingRightBeforeAnotherIsNotAsWideAsItsBoxes) {
    // The printed memo box starts 50 twips right of the job name's column and spans the
    // page; the figures' column starts 150 twips further on.
    page::TextItem memo = text(2020, 600, 9500, "");
    memo.runs = {{2020, 790, 4372, "08 41 13 Aluminum-Framed Entrances and Storefronts"}};
    memo.text = memo.runs[0].text;
    CellGrid grid = buildCellGrid(pagesOf(
        {{text(1970, 0, 4300, "Riverside"), number(2120, 300, 450, 4.5, "4.5", "0.0"), memo}}));
    ASSERT_EQ(grid.columns.size(), 2U);
    EXPECT_LT(grid.columns[0].width, 1000); // the figures are not pushed right by the memo
    EXPECT_EQ(grid.merges, (std::vector<MergedCells>{{0, 0, 1}, {2, 0, 1}}));
}

TEST(CellGridCells, KeepNumbersWithTheirFormats) {
    page::TextItem nan = number(3000, 300, 1000, std::numeric_limits<double>::quiet_NaN(), "n/a");
    CellGrid grid =
        buildCellGrid(pagesOf({{number(720, 0, 1000, 1234.5, "$1,234.50", "$###,###.00"),
                                number(3000, 0, 1000, 7, "7", "#,##0"),
                                number(720, 300, 1000, 0.5, ".50", "$###,###.00"), nan}}));
    const Cell* money = grid.find(0, 0);
    ASSERT_NE(money, nullptr);
    EXPECT_EQ(money->kind, CellKind::Number);
    EXPECT_EQ(money->number, 1234.5);
    EXPECT_EQ(grid.formats[grid.styles[money->style].format], "$###,###.00");
    EXPECT_EQ(grid.styles[money->style].align, Align::Right);
    const Cell* count = grid.find(0, 1);
    ASSERT_NE(count, nullptr);
    EXPECT_EQ(grid.formats[grid.styles[count->style].format], "#,##0");
    EXPECT_EQ(grid.find(1, 0)->style, money->style); // one style per look
    const Cell* notANumber = grid.find(1, 1);
    ASSERT_NE(notANumber, nullptr);
    EXPECT_EQ(notANumber->kind, CellKind::Text);
    EXPECT_EQ(grid.textOf(*notANumber), "n/a");
}

// Equal items are read once and then known by their content; a page of more distinct items
// than are kept in mind, and pages after it, still give every item its own cell.
TEST(CellGridCells, EveryItemGivesItsCellHoweverManyRepeatOrDiffer) {
    constexpr int kRows = 20000;
    std::vector<std::vector<page::Item>> pageItems(2);
    for (int page = 0; page < 2; ++page) {
        for (int i = 0; i < kRows; ++i) {
            const double value = i + 0.5 * page;
            pageItems[page].push_back(number(720, 300 * i, 1000, value, std::to_string(value)));
            pageItems[page].push_back(text(3000, 300 * i, 1000, i % 2 ? "Tempered" : "Annealed"));
        }
    }
    const CellGrid grid = buildCellGrid(pagesOf(std::move(pageItems)));
    ASSERT_EQ(grid.rowCount(), 2U * kRows);
    EXPECT_EQ(grid.texts, (std::vector<std::string>{"Annealed", "Tempered"}));
    for (std::uint32_t row = 0; row < grid.rowCount(); ++row) {
        const Cell* figure = grid.find(row, 0);
        const Cell* type = grid.find(row, 1);
        ASSERT_TRUE(figure && type) << "row " << row;
        ASSERT_EQ(figure->number, row % kRows + 0.5 * (row / kRows)) << "row " << row;
        ASSERT_EQ(grid.textOf(*type), row % 2 ? "Tempered" : "Annealed") << "row " << row;
    }
}

TEST(CellGridCells, TextsAreSharedAndMultiLineTextStaysInOneCell) {
    page::TextItem address = text(720, 300, 3000, "");
    address.box.height = 720;
    address.runs = {
        {720, 490, 900, "12 Main St"}, {720, 730, 900, "Springfield"}, {720, 970, 900, "IL"}};
    CellGrid grid =
        buildCellGrid(pagesOf({{text(720, 0, 1000, "Glass"), text(3000, 0, 1000, "Glass"), address,
                                text(720, 1200, 1000, "after")}}));
    EXPECT_EQ(grid.texts,
              (std::vector<std::string>{"Glass", "12 Main St\nSpringfield\nIL", "after"}));
    EXPECT_EQ(grid.find(0, 0)->text, grid.find(0, 1)->text);
    const Cell* block = grid.find(1, 0);
    ASSERT_NE(block, nullptr);
    EXPECT_TRUE(grid.styles[block->style].wrap);
    // Three lines of Arial 10 (1.15 of the size apart) and single lines of the default height.
    EXPECT_GE(grid.rowHeights.at(1), 3 * 10 * 20 * 1.15);
    EXPECT_EQ(grid.rowHeights.at(0), 0);
    EXPECT_EQ(grid.rowHeights.at(2), 0);
}

TEST(CellGridCells, WrappedTextsShowTheirPrintedLinesAndCutTextsShowWhole) {
    page::TextItem heading = text(720, 0, 790, "Ent Fab Hours", Align::Right);
    heading.box.height = 380;
    heading.runs = {{923, 190, 587, "Ent Fab"}, {1048, 380, 462, "Hours"}};
    page::TextItem cut = text(720, 600, 1770, "E5 South Service Entrance");
    cut.runs = {{720, 790, 1236, "E5 South Service"}};
    // A blank line prints no line of its own but stays in the text.
    page::TextItem memo = text(720, 1200, 6000, "Fire-rated glazing.\n\nBonds by owner.");
    memo.runs = {{720, 1390, 1451, "Fire-rated glazing."}, {720, 1870, 1200, "Bonds by owner."}};
    const CellGrid grid = buildCellGrid(pagesOf({{heading, text(1600, 0, 500, "Qty"), cut,
                                                  number(1600, 600, 500, 1, "1", "#,##0"), memo}}));
    EXPECT_EQ(rendered(grid),
              (std::vector<std::string>{"Ent Fab\nHours|Qty", "E5 South Service Entrance|=1",
                                        "Fire-rated glazing.\n\nBonds by owner.|"}));
    EXPECT_TRUE(grid.styles[grid.find(0, 0)->style].wrap);
    EXPECT_GE(grid.rowHeights.at(0), 2 * 10 * 20 * 1.15);
    // The whole text, not only its printed part, has room in its column (nothing beside it
    // is free): 25 characters where 16 printed 1236 twips wide.
    EXPECT_GE(grid.columns.at(0).width, 1236 * 25 / 16);
}

TEST(CellGridCells, ColumnsPastTheLimitFoldIntoTheLast) {
    std::vector<page::Item> items;
    for (int i = 0; i < 300; ++i) {
        items.push_back(text(i * 100, 0, 100, std::to_string(i)));
    }
    CellGrid grid = buildCellGrid(pagesOf({items}));
    ASSERT_EQ(grid.columns.size(), CellGrid::kMaxColumns);
    EXPECT_EQ(grid.textOf(*grid.find(0, 254)), "254");
    const std::string& last = grid.textOf(*grid.find(0, 255));
    EXPECT_EQ(last.substr(0, 8), "255 256 ");
    EXPECT_EQ(last.substr(last.size() - 4), " 299");
}

/// A text printed `printed` twips wide, whatever its box.
page::TextItem wide(int x, int y, int width, std::string shown, int printed,
                    Align align = Align::Left) {
    page::TextItem item = text(x, y, width, std::move(shown), align);
    item.runs[0].width = printed;
    return item;
}

/// Four columns 1440 twips apart, set by a row of short texts under the row tested.
std::vector<page::Item> withFourColumns(std::vector<page::Item> items) {
    for (int c = 0; c < 4; ++c)
        items.push_back(text(720 + 1440 * c, 300, 1000, std::string(1, char('a' + c))));
    return items;
}

TEST(CellGridRoom, FiguresWidenTheirColumnAndLongTextsMergeIntoFreeColumns) {
    struct Case {
        const char* name;
        std::vector<page::Item> items;
        std::vector<MergedCells> merges;
        int widened;       // the column that must widen, or -1
        int printedWidth;  // what it must hold at least
        const char* first; // the first row as rendered
    };
    const std::vector<Case> cases = {
        {"a figure wider than its column's spacing widens the column",
         withFourColumns({[] {
             page::TextItem figure = number(720, 0, 1440, 36746.98, "$36,746.98", "$###,###.00");
             figure.runs[0].width = 1940;
             return figure;
         }()}),
         {},
         0,
         1440 + 500,
         "=36747|||"},
        {"a left-aligned text runs right over the free columns",
         withFourColumns({wide(720, 0, 5000, "Riverside Medical Office Building", 3500)}),
         {{0, 0, 2}},
         -1,
         0,
         "Riverside Medical Office Building|||"},
        {"a right-aligned text runs left, and the merge starts where it ends",
         withFourColumns({wide(3600, 0, 1440, "Total Outside Labor:", 3500, Align::Right)}),
         {{0, 0, 2}},
         -1,
         0,
         "Total Outside Labor:|||"},
        {"a text in the last column widens it",
         withFourColumns({text(720, 0, 1000, "x"),
                          wide(5040, 0, 1440, "Total Outside Labor:", 3500, Align::Right)}),
         {},
         3,
         3500,
         "x|||Total Outside Labor:"},
        {"a text with no free column beside it widens its own",
         withFourColumns(
             {wide(720, 0, 1440, "Exclusions and notes", 2500), text(2160, 0, 1000, "y")}),
         {},
         0,
         2500,
         "Exclusions and notes|y||"},
    };
    for (const Case& c : cases) {
        const CellGrid grid = buildCellGrid(pagesOf({c.items}));
        EXPECT_EQ(grid.merges, c.merges) << c.name;
        ASSERT_EQ(grid.columns.size(), 4U) << c.name;
        for (int col = 0; col < 4; ++col) {
            if (col == c.widened) {
                EXPECT_GE(grid.columns[col].width, c.printedWidth) << c.name;
            } else if (col < 3) {
                EXPECT_EQ(grid.columns[col].width, 1440) << c.name << ", column " << col;
            }
        }
        EXPECT_EQ(rendered(grid).at(0), c.first) << c.name;
    }
}

TEST(CellGridPageBands, TheHeaderShowsOnceAndTheFooterBecomesTheSheetFooter) {
    auto page = [](int n) {
        page::TextItem title = text(720, 300, 10800, "Final Labor Report", Align::Center);
        title.pageBand = page::PageBand::Header;
        page::TextItem firm = text(720, 14400, 3000, "Cascade Glass & Glazing");
        firm.pageBand = page::PageBand::Footer;
        page::TextItem pageCount =
            number(8520, 14400, 3000, 2, "Page  " + std::to_string(n) + " of  2");
        pageCount.pageBand = page::PageBand::Footer;
        return std::vector<page::Item>{
            title, text(720, 900, 2000, "Elevation " + std::to_string(n)), firm, pageCount};
    };
    const CellGrid grid = buildCellGrid(pagesOf({page(1), page(2)}));
    EXPECT_EQ(rendered(grid),
              (std::vector<std::string>{"Final Labor Report", "Elevation 1", "Elevation 2"}));
    EXPECT_EQ(grid.footer, "&LCascade Glass && Glazing&RPage  &P of  &N");
}

TEST(CellGridPageBands, FooterTextsTheSheetFooterCannotHoldShowOnceAfterTheLastRow) {
    const std::string notice(150, 'n');
    auto page = [&](int n) {
        std::vector<page::Item> items = {text(720, 900, 2000, "System " + std::to_string(n))};
        for (int line = 0; line < 2; ++line) {
            page::TextItem footer = text(720, 14000 + 240 * line, 10000,
                                         "Note " + std::to_string(line + 1) + " " + notice);
            footer.pageBand = page::PageBand::Footer;
            items.push_back(footer);
        }
        page::TextItem pageCount = number(8520, 14600, 3000, 2, "Page " + std::to_string(n));
        pageCount.pageBand = page::PageBand::Footer;
        items.push_back(pageCount);
        return items;
    };
    const CellGrid grid = buildCellGrid(pagesOf({page(1), page(2)}));
    EXPECT_EQ(grid.footer.size(), std::string("&LNote 1 &RPage &P").size() + notice.size());
    EXPECT_EQ(rendered(grid),
              (std::vector<std::string>{"System 1", "System 2", "Note 2 " + notice}));
}

TEST(CellGridCells, ATextTallerThanARowIsCutIntoRowsOfWholeLines) {
    page::TextItem memo = text(720, 0, 6000, "");
    std::string all;
    memo.runs.clear();
    for (int line = 0; line < 120; ++line) {
        const std::string shown = "Exclusion " + std::to_string(line + 1);
        memo.runs.push_back({720, 190 + 240 * line, 1000, shown});
        all += (line > 0 ? "\n" : "") + shown;
    }
    memo.text = all;
    memo.box.height = 240 * 120;
    const CellGrid grid = buildCellGrid(pagesOf({{memo, text(720, 240 * 121, 1000, "after")}}));
    std::string joined;
    for (const Cell& cell : grid.cells) {
        if (grid.textOf(cell) == "after")
            continue;
        joined += (joined.empty() ? "" : "\n") + grid.textOf(cell);
        const std::string& piece = grid.textOf(cell);
        const auto lines = 1 + std::count(piece.begin(), piece.end(), '\n');
        EXPECT_LE(grid.rowHeights.at(cell.row), CellGrid::kMaxRowHeight);
        EXPECT_GE(grid.rowHeights.at(cell.row), lines * 10 * 20 * 1.15) << piece;
    }
    EXPECT_GT(grid.cells.size(), 2U);
    EXPECT_EQ(joined, all);
    EXPECT_EQ(grid.textOf(grid.cells.back()), "after");
}

TEST(SheetFooter, PartsPageCodesAndAmpersands) {
    auto at = [](int x, int y, std::string shown, Align align, std::optional<double> number = {}) {
        page::TextItem item = text(x, y, 3000, std::move(shown), align);
        item.numericValue = number;
        return item;
    };
    struct Case {
        const char* name;
        std::vector<page::TextItem> items;
        int pageNumber;
        const char* footer;
    };
    const std::vector<Case> cases = {
        {"left, centre and right thirds",
         {at(8000, 0, "R", Align::Right), at(720, 0, "L", Align::Left),
          at(4620, 0, "C", Align::Center)},
         1,
         "&LL&CC&RR"},
        {"an ampersand is doubled",
         {at(720, 0, "Glass & Glazing", Align::Left)},
         1,
         "&LGlass && Glazing"},
        {"a page count box gives the page number and the count as codes",
         {at(8520, 0, "Page  3 of  5", Align::Right, 5.0)},
         3,
         "&RPage  &P of  &N"},
        {"on the last page",
         {at(8520, 0, "Page  5 of  5", Align::Right, 5.0)},
         5,
         "&RPage  &P of  &N"},
        {"a page number box", {at(4620, 0, "- 3 -", Align::Center, 3.0)}, 3, "&C- &P -"},
        {"numbers of other texts stay as printed",
         {at(720, 0, "3/15/2024 5", Align::Left)},
         5,
         "&L3/15/2024 5"},
        {"texts of one part on one line and on the next",
         {at(720, 0, "Quote", Align::Left), at(2000, 20, "valid", Align::Left),
          at(720, 300, "30 days", Align::Left)},
         1,
         "&LQuote valid\n30 days"},
        {"no texts", {}, 1, ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(sheetFooter(c.items, page::kLetterWidth, c.pageNumber, 5).text, c.footer)
            << c.name;
}

TEST(CellGridCells, EmptyPagesGiveAnEmptyGrid) {
    CellGrid grid = buildCellGrid(pagesOf({{}, {page::LineItem{}}}));
    EXPECT_EQ(grid.rowCount(), 0U);
    EXPECT_TRUE(grid.cells.empty());
    EXPECT_TRUE(grid.columns.empty());
}

} // namespace
} // namespace qr::output
