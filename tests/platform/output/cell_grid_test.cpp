#include "platform/output/cell_grid.hpp"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

namespace qr::output {
namespace {

using page::Align;

page::TextItem text(int x, int y, int width, std::string shown, Align align = Align::Left) {
    page::TextItem item;
    item.box = {x, y, width, 240};
    item.align = align;
    item.runs.push_back({x, y + 190, width, shown});
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

TEST(CellGridLayout, ColumnsAreSizedByTheirSpacing) {
    CellGrid grid = buildCellGrid(
        pagesOf({{text(720, 0, 1000, "a"), text(2160, 0, 1000, "b"), text(5040, 0, 2000, "c")}}));
    ASSERT_EQ(grid.columns.size(), 3U);
    EXPECT_EQ(grid.columns[0].left, 720);
    EXPECT_EQ(grid.columns[0].width, 1440);
    EXPECT_EQ(grid.columns[1].width, 2880);
    EXPECT_EQ(grid.columns[2].width, 2000); // the last column spans its widest box
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
    EXPECT_EQ(grid.rowHeights, (std::vector<int>{0, 720, 0}));
}

TEST(CellGridCells, OnlyVisibleTextsAndCheckedBoxesMakeCells) {
    page::CheckBoxItem checked{{720, 0, 200, 200}, true, "CheckBox1"};
    page::CheckBoxItem unchecked{{720, 300, 200, 200}, false, "CheckBox2"};
    page::LineItem line{720, 600, 11520, 600};
    page::RectItem frame{{720, 900, 5000, 1000}};
    CellGrid grid =
        buildCellGrid(pagesOf({{checked, unchecked, line, frame, text(720, 1200, 1000, "  "),
                                text(720, 1500, 1000, "z")}}));
    EXPECT_EQ(rendered(grid), (std::vector<std::string>{"X", "z"}));
}

TEST(CellGridCells, TextsThatLandInOneCellAreJoined) {
    page::TextItem figure = number(740, 0, 500, 42, "42");
    figure.align = Align::Left;
    CellGrid grid = buildCellGrid(pagesOf({{text(720, 0, 1000, "Job"), figure}}));
    EXPECT_EQ(rendered(grid), (std::vector<std::string>{"Job 42"}));
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

TEST(CellGridCells, EmptyPagesGiveAnEmptyGrid) {
    CellGrid grid = buildCellGrid(pagesOf({{}, {page::LineItem{}}}));
    EXPECT_EQ(grid.rowCount(), 0U);
    EXPECT_TRUE(grid.cells.empty());
    EXPECT_TRUE(grid.columns.empty());
}

} // namespace
} // namespace qr::output
