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

/// Gives the cells of a grid the room they ask for, as the cells are made: each column widens
/// to its widest number, and the last column to its widest text; rows get the height of their
/// tallest cell. Once every cell has asked (finish()), a text still wider than its column is
/// merged, row by row, across the free columns in the direction it runs (rightwards when
/// left-aligned, leftwards when right-aligned, both ways when centred) until it fits, and what
/// merging cannot give widens the last column of the merge. Column widths never shrink below
/// what they were. Only the texts that may spread are remembered until then, not every cell.
class RoomGiver {
  public:
    /// The grid's columns must be laid out already; its cells are added as the giving goes.
    explicit RoomGiver(CellGrid& grid) : m_grid(grid) {}

    /// What cell `index` of the grid needs. Asking again for the same cell (the last one asked
    /// for) replaces what it asked before: two texts joined into one cell need their room.
    void need(std::size_t index, const CellRoom& room);
    /// Gives the room every cell asked for. Call it once, after the last cell.
    void finish();

  private:
    /// A text that may spread: its cell, width and direction.
    struct Spread {
        std::uint32_t cell;
        int width;
        page::Align align;
    };
    class RowColumns;
    void give(std::size_t index, const CellRoom& room);
    void widen(std::size_t column, int width);
    void spread(const Spread& text, RowColumns& row);

    CellGrid& m_grid;
    std::size_t m_pending = 0;
    CellRoom m_pendingRoom;
    bool m_hasPending = false;
    std::vector<Spread> m_spreads; // in the order of the cells
};

} // namespace qr::output
