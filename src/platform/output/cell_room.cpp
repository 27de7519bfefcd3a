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

/// The free columns of each row, as the giving of room goes: a column is taken by a cell or by
/// a merge.
class RowColumns {
  public:
    RowColumns(const CellGrid& grid, std::size_t begin, std::size_t end)
        : m_taken(grid.columns.size(), false) {
        for (std::size_t i = begin; i < end; ++i) {
            m_taken[grid.cells[i].column] = true;
        }
    }
    bool isFree(int column) const {
        return column >= 0 && column < static_cast<int>(m_taken.size()) && !m_taken[column];
    }
    void take(int first, int last) {
        std::fill(m_taken.begin() + first, m_taken.begin() + last + 1, true);
    }

  private:
    std::vector<bool> m_taken;
};

class RoomGiver {
  public:
    RoomGiver(CellGrid& grid, const std::vector<CellRoom>& rooms) : m_grid(grid), m_rooms(rooms) {}

    void give() {
        // Numbers widen their column; so does every text of the last column, since widening
        // it pushes nothing aside.
        const std::size_t last = m_grid.columns.size() - 1;
        for (std::size_t i = 0; i < m_grid.cells.size(); ++i) {
            if (!m_rooms[i].mayMerge || m_grid.cells[i].column == last) {
                widen(m_grid.cells[i].column, m_rooms[i].width);
            }
        }
        for (std::size_t begin = 0; begin < m_grid.cells.size();) {
            std::size_t end = begin;
            while (end < m_grid.cells.size() && m_grid.cells[end].row == m_grid.cells[begin].row) {
                ++end;
            }
            fitTexts(begin, end);
            begin = end;
        }
        setRowHeights();
    }

  private:
    void widen(int column, int width) {
        int& current = m_grid.columns[static_cast<std::size_t>(column)].width;
        current = std::max(current, width);
    }

    /// Texts of one row (cells [begin, end)) that their column cannot hold, left to right.
    void fitTexts(std::size_t begin, std::size_t end) {
        std::optional<RowColumns> row; // made when a text of the row needs it
        for (std::size_t i = begin; i < end; ++i) {
            const CellRoom& room = m_rooms[i];
            if (room.mayMerge && room.width > m_grid.columns[m_grid.cells[i].column].width) {
                if (!row) {
                    row.emplace(m_grid, begin, end);
                }
                spread(i, *row);
            }
        }
    }

    /// Merges cell `index` across the free columns beside it in the direction its text runs
    /// until it fits, and widens the last column of the merge by what is still missing. A
    /// merge spreading leftwards puts the text into the merge's first cell; the cells of the
    /// row stay in order, since the columns passed were free.
    void spread(std::size_t index, RowColumns& row) {
        const CellRoom& room = m_rooms[index];
        Cell& cell = m_grid.cells[index];
        int first = cell.column;
        int last = cell.column;
        int width = m_grid.columns[cell.column].width;
        const bool rightwards = room.align != page::Align::Right;
        const bool leftwards = room.align != page::Align::Left;
        while (width < room.width) {
            if (rightwards && row.isFree(last + 1)) {
                width += m_grid.columns[static_cast<std::size_t>(++last)].width;
            } else if (leftwards && row.isFree(first - 1)) {
                width += m_grid.columns[static_cast<std::size_t>(--first)].width;
            } else {
                break;
            }
        }
        widen(last, m_grid.columns[static_cast<std::size_t>(last)].width +
                        std::max(0, room.width - width));
        if (first != last) {
            row.take(first, last);
            m_grid.merges.push_back(
                {cell.row, static_cast<std::uint16_t>(first), static_cast<std::uint16_t>(last)});
            cell.column = static_cast<std::uint16_t>(first);
        }
    }

    void setRowHeights() {
        for (std::size_t i = 0; i < m_grid.cells.size(); ++i) {
            int& height = m_grid.rowHeights[m_grid.cells[i].row];
            const int needed = std::min(m_rooms[i].height, CellGrid::kMaxRowHeight);
            if (needed > kDefaultRowHeight) {
                height = std::max(height, needed);
            }
        }
    }

    CellGrid& m_grid;
    const std::vector<CellRoom>& m_rooms;
};

} // namespace

int lineRoom(int printedWidth) {
    return printedWidth + printedWidth * kMarginPercent / 100 + kMarginTwips;
}

int linesHeight(std::size_t lines, double points) {
    const auto pixels = static_cast<int>(lines) * linePixels(points) + kRowPaddingPixels;
    return pixels * kTwipsPerPixel;
}

std::size_t linesPerRow(double points) {
    const int rowPixels = CellGrid::kMaxRowHeight / kTwipsPerPixel - kRowPaddingPixels;
    return static_cast<std::size_t>(std::max(1, rowPixels / linePixels(points)));
}

void giveRoom(CellGrid& grid, const std::vector<CellRoom>& rooms) {
    RoomGiver(grid, rooms).give();
}

} // namespace qr::output
