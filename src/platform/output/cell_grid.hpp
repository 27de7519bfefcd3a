#pragma once
// The printed pages seen as a spreadsheet: every text on the pages becomes one cell, placed by
// where it stood. Columns come from the horizontal positions of the texts, rows from their
// vertical positions, page after page, so the sheet reads like the printed report.
//
// Placement rules:
// - Texts whose left edges lie within a small tolerance share a column. Right-aligned texts
//   (figures and their headings) whose right edges line up join the column that can take most
//   of them, and centred texts do the same by their centres; a column cannot take a text when
//   it holds another text on one of that text's rows. A right-aligned or centred text that
//   would still share a cell (a centred title starting where a date starts) moves to the free
//   column its right edge or centre falls in, or gets a column of its own. Columns are ordered
//   left to right by their usual left edge.
// - Texts whose tops lie within a small tolerance of a row's first text share that row. Each
//   page starts a new row below the last row of the page before.
// - The page header shows once, where the first page printed it: the repeats on later pages are
//   left out. The footer of the first page becomes the sheet's footer (page numbers and counts
//   as Excel's page codes), so no footer stands between rows; footer texts Excel has no room
//   for there (it keeps 255 characters) show once, below the last row.
// - A text that showed a number (a bound or summed figure, or one a handler set through a
//   number format) gives a numeric cell carrying that format; other texts give text cells. A
//   text keeps the line breaks the engine printed it with ("\n" between its lines, its own
//   blank lines kept), or stays whole when the page cut it short; it stays in one cell unless
//   it needs more lines than one row can hold: then it is cut into cells of as many lines as
//   a row holds, one below the other. A checked check box gives the text "X", an
//   unchecked one nothing; lines and rectangles give nothing.
// - Two texts that land in the same cell (overlapping boxes) are joined with a space into one
//   text cell. Texts beyond the 256th column are joined into the last one.
// - Every cell gets the room its text was printed in (cell_room.hpp): columns start as wide
//   as the spacing of the printed columns and widen to their widest number; a text wider than
//   its column is merged across the free columns beside it in the direction it runs, and only
//   what that cannot give widens a column. Rows are as tall as their lines need.

#include "platform/engine/page/page.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace qr::output {

/// How a cell looks: the report font it was printed with (an index into CellGrid::fonts, or
/// -1 for the default font), its horizontal alignment, whether it wraps (multi-line text) and
/// its number format (an index into CellGrid::formats; 0 is General).
struct CellStyle {
    int font = -1;
    page::Align align = page::Align::Left;
    bool wrap = false;
    std::uint32_t format = 0;
    bool operator==(const CellStyle&) const = default;
};

enum class CellKind : std::uint8_t { Text, Number };

/// One cell. A Text cell names its text by index into CellGrid::texts; a Number cell holds
/// its value in `number` (always finite). Sixteen bytes: a long report has millions.
struct Cell {
    std::uint32_t row = 0;
    std::uint8_t column = 0; // below CellGrid::kMaxColumns
    CellKind kind = CellKind::Text;
    std::uint16_t style = 0; // index into CellGrid::styles
    union {
        std::uint32_t text = 0; // a Text cell's
        double number;          // a Number cell's
    };
};
static_assert(sizeof(Cell) == 16);

/// A column: its left edge on the page and the width its texts need, both in twips (the
/// room for the text itself; a writer adds its own cell padding).
struct GridColumn {
    int left = 0;
    int width = 0;
};

/// Cells of one row merged into one: the cell at (row, firstColumn) holds the text.
struct MergedCells {
    std::uint32_t row = 0;
    std::uint16_t firstColumn = 0;
    std::uint16_t lastColumn = 0;
    bool operator==(const MergedCells&) const = default;
};

/// The whole report as one grid of cells.
struct CellGrid {
    /// Largest number of columns a grid holds (a worksheet's limit).
    static constexpr std::size_t kMaxColumns = 256;

    /// Largest height of one row, in twips (Excel's 409 points).
    static constexpr int kMaxRowHeight = 8180;

    std::vector<GridColumn> columns;
    /// One entry per row: the height in twips its lines need when that is more than the
    /// default row height, or 0 for the default height.
    std::vector<int> rowHeights;
    /// Sorted by row, then first column; merges never overlap.
    std::vector<MergedCells> merges;
    /// The page footer in Excel's header and footer syntax ("&L...&C...&R...", page number
    /// "&P", page count "&N", "&&" for an ampersand); empty when the pages have none.
    std::string footer;
    /// Sorted by row, then column; at most one cell per position.
    std::vector<Cell> cells;
    /// Distinct cell texts in order of first use.
    std::vector<std::string> texts;
    /// Distinct number formats as the report wrote them ("$###,###.00"); formats[0] is ""
    /// (General).
    std::vector<std::string> formats{std::string()};
    /// Distinct cell styles in order of first use.
    std::vector<CellStyle> styles;
    /// The report's fonts (copied from the pages).
    std::vector<page::FontSpec> fonts;

    std::uint32_t rowCount() const { return static_cast<std::uint32_t>(rowHeights.size()); }
    /// The cell at (row, column), or nullptr when that position is empty.
    const Cell* find(std::uint32_t row, std::uint16_t column) const;
    /// The text of a Text cell.
    const std::string& textOf(const Cell& cell) const { return texts[cell.text]; }
};

/// Lays the pages out as a grid following the rules above. Never fails on well-formed pages;
/// an empty collection gives an empty grid.
CellGrid buildCellGrid(const page::Pages& pages);

} // namespace qr::output
