#pragma once
// The room the cells of a grid need to be read as printed, and how the grid gives it: wider
// columns, cells merged across the free columns beside a long text, taller rows. Part of the
// cell grid (cell_grid.hpp); widths and heights are in twips, like the pages.
//
// Widths come from the engine's own measure of the printed lines, in the report's fonts. A
// spreadsheet draws the same text with its own rounding of each glyph to whole pixels, which
// can make a line a few percent wider than printed, so every width carries a margin for that.

#include "platform/engine/page/items.hpp"
#include "platform/output/cell_grid.hpp"

#include <vector>

namespace qr::output {

/// What one cell needs.
struct CellRoom {
    int width = 0;  ///< its widest line, margin included
    int height = 0; ///< all its lines
    page::Align align = page::Align::Left;
    /// A text may spread over the free columns beside it; a number keeps to its column, so
    /// that it can be summed and sorted with the numbers above and below it.
    bool mayMerge = false;
};

/// Room for a line the engine measured `printedWidth` twips wide.
int lineRoom(int printedWidth);
/// Height of `lines` lines of a font of `points`, as a spreadsheet spaces them.
int linesHeight(std::size_t lines, double points);
/// Lines of a font of `points` that one row holds.
std::size_t linesPerRow(double points);

/// Gives every cell of `grid` the room `rooms` asks for (one entry per cell, in the order of
/// grid.cells): first each column widens to its widest number, and the last column to its
/// widest text; then, row by row, a text still wider than its column is merged across the
/// free columns in the direction it runs (rightwards when left-aligned, leftwards when
/// right-aligned, both ways when centred) until it fits, and what merging cannot give widens
/// the last column of the merge. Rows get the height of their tallest cell. Column widths
/// never shrink below what they were.
void giveRoom(CellGrid& grid, const std::vector<CellRoom>& rooms);

} // namespace qr::output
