#include "platform/output/cell_room.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

namespace qr::output {

namespace {

constexpr int kTwipsPerPixel = 15; // at 96 pixels an inch
// A spreadsheet rounds each glyph to whole pixels: up to half a pixel a glyph, some 5 % of a
// line of small figures. Lines get this much more room than printed, and two pixels more.
constexpr int kMarginPercent = 6;
constexpr int kMarginTwips = 2 * kTwipsPerPixel;
// Arial's line: ascent, descent and line gap are 1.15 em; a row adds a pixel to its lines.
constexpr double kLineEm = 1.15;
constexpr int kRowPaddingPixels = 1;
constexpr int kDefaultRowHeight = 255; // twips: what a row of the default font gets anyway

int linePixels(double points) {
    return static_cast<int>(std::ceil(points * 96.0 / 72.0 * kLineEm));
}

} // namespace

int lineRoom(int printedWidth) {
    return printedWidth + printedWidth * kMarginPercent / 100 + kMarginTwips;
}

int linesHeight(std::size_t lines, double points) {
    const auto pixels = static_cast<int>(lines) * linePixels(points) + kRowPaddingPixels;
    return pixels * kTwipsPerPixel;
}

/// The free columns of one row, as the giving of room goes: a column is taken by a cell or by
/// a merge.
class RoomGiver::RowColumns {
  public:
    RowColumns(const CellGrid& grid, std::uint32_t row) : m_taken(grid.columns.size(), false) {
        auto [begin, end] = std::equal_range(
            grid.cells.begin(), grid.cells.end(), row,
            [](const auto& a, const auto& b) { return rowOf(a) < rowOf(b); });
        for (auto it = begin; it != end; ++it) {
            m_taken[it->column] = true;
        }
    }
    bool isFree(int column) const {
        return column >= 0 && column < static_cast<int>(m_taken.size()) && !m_taken[column];
    }
    void take(int first, int last) {
        std::fill(m_taken.begin() + first, m_taken.begin() + last + 1, true);
    }

  private:
    static std::uint32_t rowOf(const Cell& cell) { return cell.row; }
    static std::uint32_t rowOf(std::uint32_t row) { return row; }

    std::vector<bool> m_taken;
};

void RoomGiver::need(std::size_t index, const CellRoom& room) {
    if (m_hasPending && index != m_pending) {
        give(m_pending, m_pendingRoom);
    }
    m_pending = index;
    m_pendingRoom = room;
    m_hasPending = true;
}

// A cell's room is given once no later text can join it: its row's height, and the width of
// its column when it is a number or stands in the last column. A text elsewhere waits for
// finish(), when its column's width is known, unless it fits already: columns only widen.
void RoomGiver::give(std::size_t index, const CellRoom& room) {
    const Cell& cell = m_grid.cells[index];
    const int needed = std::min(room.height, CellGrid::kMaxRowHeight);
    if (needed > kDefaultRowHeight) {
        int& height = m_grid.rowHeights[cell.row];
        height = std::max(height, needed);
    }
    if (!room.mayMerge || cell.column + 1U == m_grid.columns.size()) {
        widen(cell.column, room.width);
    } else if (room.width > m_grid.columns[cell.column].width) {
        m_spreads.push_back({static_cast<std::uint32_t>(index), room.width, room.align});
    }
}

void RoomGiver::finish() {
    if (m_hasPending) {
        give(m_pending, m_pendingRoom);
        m_hasPending = false;
    }
    // Row by row, left to right: a merge takes columns that later texts of its row then find
    // taken.
    std::optional<RowColumns> row; // made when a text of the row needs it
    std::uint32_t rowNumber = 0;
    for (const Spread& text : m_spreads) {
        const Cell& cell = m_grid.cells[text.cell];
        if (text.width <= m_grid.columns[cell.column].width) {
            continue;
        }
        if (!row || rowNumber != cell.row) {
            row.emplace(m_grid, cell.row);
            rowNumber = cell.row;
        }
        spread(text, *row);
    }
    std::vector<Spread>().swap(m_spreads);
}

void RoomGiver::widen(std::size_t column, int width) {
    int& current = m_grid.columns[column].width;
    current = std::max(current, width);
}

/// Merges the text's cell across the free columns beside it in the direction its text runs
/// until it fits, and widens the last column of the merge by what is still missing. A merge
/// spreading leftwards puts the text into the merge's first cell; the cells of the row stay
/// in order, since the columns passed were free.
void RoomGiver::spread(const Spread& text, RowColumns& row) {
    Cell& cell = m_grid.cells[text.cell];
    int first = cell.column;
    int last = cell.column;
    int width = m_grid.columns[cell.column].width;
    const bool rightwards = text.align != page::Align::Right;
    const bool leftwards = text.align != page::Align::Left;
    while (width < text.width) {
        if (rightwards && row.isFree(last + 1)) {
            width += m_grid.columns[static_cast<std::size_t>(++last)].width;
        } else if (leftwards && row.isFree(first - 1)) {
            width += m_grid.columns[static_cast<std::size_t>(--first)].width;
        } else {
            break;
        }
    }
    const auto lastColumn = static_cast<std::size_t>(last);
    widen(lastColumn, m_grid.columns[lastColumn].width + std::max(0, text.width - width));
    if (first != last) {
        row.take(first, last);
        m_grid.merges.push_back(
            {cell.row, static_cast<std::uint16_t>(first), static_cast<std::uint16_t>(last)});
        cell.column = static_cast<std::uint8_t>(first);
    }
}

std::size_t linesPerRow(double points) {
    const int rowPixels = CellGrid::kMaxRowHeight / kTwipsPerPixel - kRowPaddingPixels;
    return static_cast<std::size_t>(std::max(1, rowPixels / linePixels(points)));
}


} // namespace qr::output
