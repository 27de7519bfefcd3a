#include "platform/output/cell_grid.hpp"

#include <algorithm>
#include <cmath>
#include <deque>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>

namespace qr::output {

const Cell* CellGrid::find(std::uint32_t row, std::uint16_t column) const {
    auto it =
        std::lower_bound(cells.begin(), cells.end(), std::pair(row, column),
                         [](const Cell& cell, const std::pair<std::uint32_t, std::uint16_t>& at) {
                             return std::pair(cell.row, cell.column) < at;
                         });
    if (it == cells.end() || it->row != row || it->column != column) {
        return nullptr;
    }
    return &*it;
}

namespace {

constexpr int kColumnTolerance = 60; // twips: edges this close line up
constexpr int kRowTolerance = 60;    // twips: tops this close share a row
constexpr int kMinColumnWidth = 180; // twips
constexpr int kLineHeight = 240;     // twips, for multi-line text without a measured box
// A workbook holds at most 4,050 cell formats, some of which the writer needs itself.
constexpr std::size_t kMaxStyles = 4000;
constexpr std::string_view kCheckedMark = "X";

/// Where an item stands across the page: the key columns are derived from.
struct Placement {
    int left = 0;
    int right = 0;
    page::Align align = page::Align::Left;
    bool operator==(const Placement&) const = default;
};

struct PlacementHash {
    std::size_t operator()(const Placement& p) const noexcept {
        std::uint64_t h = static_cast<std::uint32_t>(p.left);
        h = h * 0x9E3779B97F4A7C15ULL + static_cast<std::uint32_t>(p.right);
        h = h * 0x9E3779B97F4A7C15ULL + static_cast<std::uint32_t>(p.align);
        return static_cast<std::size_t>(h ^ (h >> 29));
    }
};

int anchorOf(const Placement& p) {
    switch (p.align) {
    case page::Align::Right:
        return p.right;
    case page::Align::Center:
        return p.left + (p.right - p.left) / 2;
    case page::Align::Left:
        break;
    }
    return p.left;
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

/// Bits over the column clusters, one row per movable placement.
class BitTable {
  public:
    BitTable(std::size_t rows, std::size_t bits)
        : m_words((bits + 63) / 64), m_bits(rows * m_words) {}
    void set(std::size_t row, std::size_t bit) {
        m_bits[row * m_words + bit / 64] |= 1ULL << (bit % 64);
    }
    bool test(std::size_t row, std::size_t bit) const {
        return (m_bits[row * m_words + bit / 64] >> (bit % 64)) & 1U;
    }

  private:
    std::size_t m_words;
    std::vector<std::uint64_t> m_bits;
};

class GridBuilder {
  public:
    explicit GridBuilder(const page::Pages& pages) : m_pages(pages) { m_grid.fonts = pages.fonts; }

    CellGrid build() {
        placeRows();
        assignColumns();
        fillCells();
        m_grid.texts.assign(std::make_move_iterator(m_texts.begin()),
                            std::make_move_iterator(m_texts.end()));
        return std::move(m_grid);
    }

  private:
    /// Where an item is kept: pages hold their items packed, so the builder keeps positions
    /// and decodes an item again when it needs more than its placement.
    struct ItemRef {
        std::uint32_t page;
        std::uint32_t index;
    };
    struct Source {
        ItemRef ref;
        int top;
        int lineHeight; // multiLineHeight() of the item
        Placement place;
    };
    struct Placed {
        ItemRef ref;
        std::uint32_t row;
        std::uint32_t key;
    };
    struct KeyInfo {
        Placement place;
        std::uint64_t count = 0;
        std::uint32_t cluster = 0;
    };
    struct RowEntry {
        std::uint32_t column;
        int left;
        ItemRef ref;
    };

    // --- items --------------------------------------------------------------------------

    /// The item at `ref`, decoded into the builder's scratch item: valid until the next call.
    const page::Item& load(ItemRef ref) {
        m_pages.pages[ref.page].items.decodeInto(ref.index, m_item);
        return m_item;
    }

    /// The text an item shows, or an empty view when it shows nothing. The view lives as
    /// long as the item and until the next call.
    std::string_view displayText(const page::Item& item) {
        if (const auto* check = std::get_if<page::CheckBoxItem>(&item)) {
            return check->checked ? kCheckedMark : std::string_view();
        }
        const auto* text = std::get_if<page::TextItem>(&item);
        if (text == nullptr) {
            return {};
        }
        if (!text->text.empty() || text->runs.empty()) {
            return text->text;
        }
        m_joined.clear();
        for (const page::TextRun& run : text->runs) {
            if (&run != &text->runs.front()) {
                m_joined += '\n';
            }
            m_joined += run.text;
        }
        return m_joined;
    }

    static std::optional<double> numberOf(const page::Item& item) {
        const auto* text = std::get_if<page::TextItem>(&item);
        if (text == nullptr || !text->numericValue || !std::isfinite(*text->numericValue)) {
            return std::nullopt;
        }
        return text->numericValue;
    }

    bool isPlaceable(const page::Item& item) {
        if (numberOf(item)) {
            return true;
        }
        return !isBlank(displayText(item));
    }

    static Placement placementOf(const page::Item& item) {
        if (const auto* text = std::get_if<page::TextItem>(&item)) {
            return {text->box.x, text->box.x + text->box.width, text->align};
        }
        const auto& box = std::get<page::CheckBoxItem>(item).box;
        return {box.x, box.x + box.width, page::Align::Center};
    }

    static int topOf(const page::Item& item) {
        if (const auto* text = std::get_if<page::TextItem>(&item)) {
            return text->box.y;
        }
        return std::get<page::CheckBoxItem>(item).box.y;
    }

    /// Height a multi-line text needs, 0 for a single line.
    static int multiLineHeight(const page::Item& item) {
        const auto* text = std::get_if<page::TextItem>(&item);
        if (text == nullptr) {
            return 0;
        }
        std::size_t lines = std::max<std::size_t>(
            text->runs.size(), 1 + std::count(text->text.begin(), text->text.end(), '\n'));
        if (lines < 2) {
            return 0;
        }
        return std::max(text->box.height, static_cast<int>(lines) * kLineHeight);
    }

    // --- rows ---------------------------------------------------------------------------

    void placeRows() {
        std::size_t items = 0;
        for (const page::Page& page : m_pages.pages) {
            items += page.items.size();
        }
        m_placed.reserve(items);
        std::vector<Source> scratch;
        page::Item item;
        for (std::uint32_t p = 0; p < m_pages.pages.size(); ++p) {
            const page::ItemList& list = m_pages.pages[p].items;
            scratch.clear();
            for (std::uint32_t i = 0; i < list.size(); ++i) {
                list.decodeInto(i, item);
                if (isPlaceable(item)) {
                    scratch.push_back(
                        {{p, i}, topOf(item), multiLineHeight(item), placementOf(item)});
                }
            }
            std::stable_sort(scratch.begin(), scratch.end(), [](const Source& a, const Source& b) {
                return a.top != b.top ? a.top < b.top : a.place.left < b.place.left;
            });
            placePage(scratch);
        }
    }

    void placePage(const std::vector<Source>& sources) {
        int rowTop = 0;
        for (std::size_t i = 0; i < sources.size(); ++i) {
            const Source& source = sources[i];
            if (i == 0 || source.top - rowTop > kRowTolerance) {
                rowTop = source.top;
                m_grid.rowHeights.push_back(0);
            }
            auto row = static_cast<std::uint32_t>(m_grid.rowHeights.size() - 1);
            int& height = m_grid.rowHeights.back();
            height = std::max(height, source.lineHeight);
            m_placed.push_back({source.ref, row, keyOf(source.place)});
        }
    }

    std::uint32_t keyOf(const Placement& place) {
        auto [it, added] = m_keyIndex.try_emplace(place, static_cast<std::uint32_t>(m_keys.size()));
        if (added) {
            m_keys.push_back({place, 0, 0});
        }
        ++m_keys[it->second].count;
        return it->second;
    }

    // --- columns ------------------------------------------------------------------------

    void assignColumns() {
        std::uint32_t clusters = clusterLeftEdges();
        // Right-aligned figures line up by their right edges, centred texts by their centres.
        std::vector<std::int32_t> movable(m_keys.size(), -1);
        std::int32_t movableCount = 0;
        for (std::size_t k = 0; k < m_keys.size(); ++k) {
            if (m_keys[k].place.align != page::Align::Left) {
                movable[k] = movableCount++;
            }
        }
        BitTable conflicts =
            rowConflicts(movable, static_cast<std::size_t>(movableCount), clusters);
        alignEdges(page::Align::Right, movable, conflicts);
        alignEdges(page::Align::Center, movable, conflicts);
        clusters = separateCrowded(clusters, movable, conflicts);
        orderColumns(clusters);
    }

    /// Gives every placement a first cluster: left edges within the tolerance of a cluster's
    /// first edge belong to it. Returns the number of clusters.
    std::uint32_t clusterLeftEdges() {
        std::vector<std::uint32_t> order(m_keys.size());
        for (std::uint32_t k = 0; k < order.size(); ++k) {
            order[k] = k;
        }
        std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
            return m_keys[a].place.left < m_keys[b].place.left;
        });
        std::uint32_t clusters = 0;
        int start = 0;
        for (std::size_t i = 0; i < order.size(); ++i) {
            KeyInfo& key = m_keys[order[i]];
            if (i == 0 || key.place.left - start > kColumnTolerance) {
                start = key.place.left;
                ++clusters;
            }
            key.cluster = clusters - 1;
        }
        return clusters;
    }

    /// For each movable placement, the clusters that hold another text on one of its rows.
    /// Rows laid out like the row before (repeated detail lines) add nothing new.
    BitTable rowConflicts(const std::vector<std::int32_t>& movable, std::size_t movableCount,
                          std::uint32_t clusters) const {
        BitTable table(movableCount, clusters);
        std::vector<std::uint32_t> previous;
        std::vector<std::uint32_t> current;
        for (std::size_t begin = 0; begin < m_placed.size();) {
            std::size_t end = begin;
            current.clear();
            while (end < m_placed.size() && m_placed[end].row == m_placed[begin].row) {
                current.push_back(m_placed[end++].key);
            }
            if (current != previous) {
                for (std::size_t i = 0; i < current.size(); ++i) {
                    if (movable[current[i]] < 0) {
                        continue;
                    }
                    for (std::size_t j = 0; j < current.size(); ++j) {
                        if (j != i) {
                            table.set(static_cast<std::size_t>(movable[current[i]]),
                                      m_keys[current[j]].cluster);
                        }
                    }
                }
                std::swap(previous, current);
            }
            begin = end;
        }
        return table;
    }

    /// Gathers placements of `align` whose anchors line up into one cluster: the one that can
    /// take most of their texts (a cluster cannot take a text when it holds another text on
    /// one of that text's rows). Texts it cannot take stay where they are.
    void alignEdges(page::Align align, const std::vector<std::int32_t>& movable,
                    const BitTable& conflicts) {
        std::vector<std::uint32_t> order;
        for (std::uint32_t k = 0; k < m_keys.size(); ++k) {
            if (m_keys[k].place.align == align) {
                order.push_back(k);
            }
        }
        std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
            return anchorOf(m_keys[a].place) < anchorOf(m_keys[b].place);
        });
        for (std::size_t begin = 0; begin < order.size();) {
            int start = anchorOf(m_keys[order[begin]].place);
            std::size_t end = begin;
            while (end < order.size() &&
                   anchorOf(m_keys[order[end]].place) - start <= kColumnTolerance) {
                ++end;
            }
            std::span<const std::uint32_t> group(order.data() + begin, end - begin);
            std::uint32_t home = bestHome(group, movable, conflicts);
            for (std::uint32_t k : group) {
                if (canTake(home, k, movable, conflicts)) {
                    m_keys[k].cluster = home;
                }
            }
            begin = end;
        }
    }

    bool canTake(std::uint32_t cluster, std::uint32_t key, const std::vector<std::int32_t>& movable,
                 const BitTable& conflicts) const {
        return m_keys[key].cluster == cluster ||
               !conflicts.test(static_cast<std::size_t>(movable[key]), cluster);
    }

    /// The cluster that can take most texts of the group; ties go to the cluster that holds
    /// most of them already, then to the leftmost.
    std::uint32_t bestHome(std::span<const std::uint32_t> group,
                           const std::vector<std::int32_t>& movable,
                           const BitTable& conflicts) const {
        std::uint32_t best = m_keys[group[0]].cluster;
        std::pair<std::uint64_t, std::uint64_t> bestScore{0, 0}; // texts taken, texts held
        for (std::uint32_t candidate : group) {
            std::uint32_t cluster = m_keys[candidate].cluster;
            std::pair<std::uint64_t, std::uint64_t> score{0, 0};
            for (std::uint32_t k : group) {
                score.first += canTake(cluster, k, movable, conflicts) ? m_keys[k].count : 0;
                score.second += m_keys[k].cluster == cluster ? m_keys[k].count : 0;
            }
            if (score > bestScore || (score == bestScore && cluster < best)) {
                best = cluster;
                bestScore = score;
            }
        }
        return best;
    }

    /// A right-aligned or centred text that still shares its cluster with another text on one
    /// of its rows (a centred title starting where a left-aligned date starts) moves to the
    /// column its anchor falls in, when that column is free on its rows, or else gets a
    /// column of its own. Returns the new number of clusters.
    std::uint32_t separateCrowded(std::uint32_t clusters, const std::vector<std::int32_t>& movable,
                                  const BitTable& conflicts) {
        std::vector<ClusterInfo> infos = describeClusters(clusters);
        std::uint32_t firstClusters = clusters;
        for (std::size_t k = 0; k < m_keys.size(); ++k) {
            KeyInfo& key = m_keys[k];
            if (movable[k] < 0 || key.cluster >= firstClusters) {
                continue;
            }
            auto row = static_cast<std::size_t>(movable[k]);
            if (!conflicts.test(row, key.cluster)) {
                continue;
            }
            const ClusterInfo* under = nullptr;
            for (const ClusterInfo& info : infos) {
                bool free = info.used && info.id < firstClusters && !conflicts.test(row, info.id);
                if (free && info.left <= anchorOf(key.place) &&
                    (under == nullptr || info.left > under->left)) {
                    under = &info;
                }
            }
            key.cluster = under != nullptr ? under->id : clusters++;
        }
        return clusters;
    }

    struct ClusterInfo {
        std::uint32_t id = 0;
        int left = 0; // the left edge most of its texts have
        std::uint64_t leftCount = 0;
        int right = 0; // the rightmost right edge
        bool used = false;
    };

    /// Where each cluster stands, indexed by cluster.
    std::vector<ClusterInfo> describeClusters(std::uint32_t clusters) const {
        std::vector<ClusterInfo> infos(clusters);
        std::vector<std::uint32_t> order(m_keys.size());
        for (std::uint32_t k = 0; k < order.size(); ++k) {
            order[k] = k;
        }
        std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
            const KeyInfo& x = m_keys[a];
            const KeyInfo& y = m_keys[b];
            return x.cluster != y.cluster ? x.cluster < y.cluster : x.place.left < y.place.left;
        });
        for (std::size_t i = 0; i < order.size();) {
            const KeyInfo& first = m_keys[order[i]];
            std::uint64_t count = 0;
            int right = first.place.right;
            std::size_t j = i;
            for (; j < order.size() && m_keys[order[j]].cluster == first.cluster &&
                   m_keys[order[j]].place.left == first.place.left;
                 ++j) {
                count += m_keys[order[j]].count;
                right = std::max(right, m_keys[order[j]].place.right);
            }
            ClusterInfo& info = infos[first.cluster];
            if (!info.used || count > info.leftCount) {
                info.left = first.place.left;
                info.leftCount = count;
            }
            info.right = info.used ? std::max(info.right, right) : right;
            info.used = true;
            info.id = first.cluster;
            i = j;
        }
        return infos;
    }

    /// Orders the clusters by their usual left edge and turns them into columns sized by the
    /// spacing to the next one.
    void orderColumns(std::uint32_t clusters) {
        std::vector<ClusterInfo> infos = describeClusters(clusters);
        std::erase_if(infos, [](const ClusterInfo& info) { return !info.used; });
        std::sort(infos.begin(), infos.end(), [](const ClusterInfo& a, const ClusterInfo& b) {
            return a.left != b.left ? a.left < b.left : a.id < b.id;
        });
        m_columnOfCluster.assign(clusters, 0);
        for (std::size_t c = 0; c < infos.size(); ++c) {
            m_columnOfCluster[infos[c].id] =
                static_cast<std::uint32_t>(std::min(c, CellGrid::kMaxColumns - 1));
            if (c < CellGrid::kMaxColumns) {
                bool last = c + 1 == infos.size() || c + 1 == CellGrid::kMaxColumns;
                int width = (last ? infos[c].right : infos[c + 1].left) - infos[c].left;
                if (width < kMinColumnWidth) {
                    // Two columns starting together (a title split from a date): each as wide
                    // as its texts.
                    width = infos[c].right - infos[c].left;
                }
                m_grid.columns.push_back({infos[c].left, std::max(width, kMinColumnWidth)});
            }
        }
    }

    // --- cells --------------------------------------------------------------------------

    void fillCells() {
        m_grid.cells.reserve(m_placed.size());
        std::vector<RowEntry> row;
        for (std::size_t begin = 0; begin < m_placed.size();) {
            row.clear();
            std::size_t end = begin;
            for (; end < m_placed.size() && m_placed[end].row == m_placed[begin].row; ++end) {
                const Placed& placed = m_placed[end];
                const KeyInfo& key = m_keys[placed.key];
                row.push_back({m_columnOfCluster[key.cluster], key.place.left, placed.ref});
            }
            std::stable_sort(row.begin(), row.end(), [](const RowEntry& a, const RowEntry& b) {
                return a.column != b.column ? a.column < b.column : a.left < b.left;
            });
            for (const RowEntry& entry : row) {
                if (!m_grid.cells.empty() && m_grid.cells.back().row == m_placed[begin].row &&
                    m_grid.cells.back().column == entry.column) {
                    joinInto(m_grid.cells.back(), load(entry.ref));
                } else {
                    addCell(m_placed[begin].row, entry);
                }
            }
            begin = end;
        }
    }

    void addCell(std::uint32_t row, const RowEntry& entry) {
        const page::Item& item = load(entry.ref);
        Cell cell;
        cell.row = row;
        cell.column = static_cast<std::uint16_t>(entry.column);
        CellStyle style;
        style.align = placementOf(item).align;
        if (const auto* text = std::get_if<page::TextItem>(&item)) {
            bool known =
                text->font >= 0 && static_cast<std::size_t>(text->font) < m_pages.fonts.size();
            style.font = known ? text->font : -1;
        }
        m_cellText = displayText(item);
        if (auto number = numberOf(item)) {
            cell.kind = CellKind::Number;
            cell.number = *number;
            style.format = internFormat(std::get<page::TextItem>(item).format);
        } else {
            cell.kind = CellKind::Text;
            cell.text = internText(m_cellText);
            style.wrap = m_cellText.find('\n') != std::string_view::npos;
        }
        cell.style = internStyle(style);
        m_grid.cells.push_back(cell);
    }

    /// Two texts in one cell: the cell becomes the text of both, joined by a space.
    void joinInto(Cell& cell, const page::Item& item) {
        const std::string_view more = displayText(item);
        m_cellText += ' ';
        m_cellText += more;
        CellStyle style = m_grid.styles[cell.style];
        style.format = 0;
        style.wrap = m_cellText.find('\n') != std::string_view::npos;
        cell.kind = CellKind::Text;
        cell.number = 0.0;
        cell.text = internText(m_cellText);
        cell.style = internStyle(style);
    }

    std::uint32_t internText(std::string_view text) {
        if (auto it = m_textIndex.find(text); it != m_textIndex.end()) {
            return it->second;
        }
        auto id = static_cast<std::uint32_t>(m_texts.size());
        m_textIndex.emplace(m_texts.emplace_back(text), id);
        return id;
    }

    std::uint32_t internFormat(const std::string& format) {
        if (format.empty()) {
            return 0;
        }
        if (m_lastFormat < m_grid.formats.size() && m_grid.formats[m_lastFormat] == format) {
            return m_lastFormat;
        }
        auto it = std::find(m_grid.formats.begin(), m_grid.formats.end(), format);
        if (it == m_grid.formats.end()) {
            it = m_grid.formats.insert(it, format);
        }
        m_lastFormat = static_cast<std::uint32_t>(it - m_grid.formats.begin());
        return m_lastFormat;
    }

    std::uint16_t internStyle(const CellStyle& style) {
        std::uint64_t key = static_cast<std::uint64_t>(style.font + 1) |
                            static_cast<std::uint64_t>(style.align) << 24 |
                            static_cast<std::uint64_t>(style.wrap) << 26 |
                            static_cast<std::uint64_t>(style.format) << 27;
        if (auto it = m_styleIndex.find(key); it != m_styleIndex.end()) {
            return it->second;
        }
        if (m_grid.styles.size() >= kMaxStyles) {
            // Out of cell formats: keep at least the number format.
            auto same = std::find_if(m_grid.styles.begin(), m_grid.styles.end(),
                                     [&](const CellStyle& s) { return s.format == style.format; });
            return static_cast<std::uint16_t>(
                same == m_grid.styles.end() ? 0 : same - m_grid.styles.begin());
        }
        auto index = static_cast<std::uint16_t>(m_grid.styles.size());
        m_grid.styles.push_back(style);
        m_styleIndex.emplace(key, index);
        return index;
    }

    const page::Pages& m_pages;
    CellGrid m_grid;
    std::vector<Placed> m_placed;
    std::vector<KeyInfo> m_keys;
    std::unordered_map<Placement, std::uint32_t, PlacementHash> m_keyIndex;
    std::vector<std::uint32_t> m_columnOfCluster;
    std::unordered_map<std::string_view, std::uint32_t> m_textIndex;
    std::unordered_map<std::uint64_t, std::uint16_t> m_styleIndex;
    std::uint32_t m_lastFormat = 0;
    std::deque<std::string>
        m_texts;            // distinct cell texts; a deque keeps them in place for the index
    std::string m_cellText; // text of the last cell added
    std::string m_joined;   // displayText() of a text known only by its runs
    page::Item m_item;      // the item load() decoded last
};

} // namespace

CellGrid buildCellGrid(const page::Pages& pages) {
    return GridBuilder(pages).build();
}

} // namespace qr::output
