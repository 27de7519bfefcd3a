#include "platform/output/cell_grid.hpp"

#include "platform/core/bytes_memo.hpp"
#include "platform/output/cairo_text_measurer.hpp"
#include "platform/output/cell_room.hpp"
#include "platform/output/sheet_footer.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <deque>
#include <limits>
#include <optional>
#include <set>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>

namespace qr::output {

const Cell* CellGrid::find(std::uint32_t row, std::uint16_t column) const {
    auto it = std::lower_bound(
        cells.begin(), cells.end(), std::pair(row, column),
        [](const Cell& cell, const std::pair<std::uint32_t, std::uint16_t>& at) {
            return std::pair<std::uint32_t, std::uint16_t>(cell.row, cell.column) < at;
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
    /// and decodes an item again when it needs more than its placement. A text too tall for
    /// one row is placed in pieces: `lines` of its runs from `firstLine` (0 lines: all of it).
    /// Nothing is kept per placed item between the passes: a long report has millions, and
    /// the cells take their memory. Each pass reads the pages again, one page at a time.
    struct ItemRef {
        std::uint32_t page;
        std::uint32_t index;
        std::uint32_t firstLine = 0;
        std::uint32_t lines = 0;
    };
    static constexpr ItemRef kWhole{0, 0, 0, 0};
    static constexpr std::uint32_t kUnremembered = BytesMemo<int>::kNone;
    struct Source {
        ItemRef ref;
        int top;
        Placement place;
        std::uint32_t remembered = kUnremembered; // what is known of its item, or none
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
        std::uint32_t remembered;
    };

    // --- items --------------------------------------------------------------------------

    /// The item at `ref`, decoded into the builder's scratch item: valid until the next call.
    /// No pass looks at control or section names.
    const page::Item& load(ItemRef ref) {
        m_pages.pages[ref.page].items.decodeInto(ref.index, m_item,
                                                 page::kDecodeRunTexts | page::kDecodeFormat);
        return m_item;
    }

    // --- what equal items have in common -------------------------------------------------

    /// A cell as an item gives it, wherever it stands.
    struct MadeCell {
        Cell cell; // its row and column still to be set
        CellRoom room;
    };

    /// What the builder derives from an item that does not depend on where it stands. A
    /// report repeats most of its cells (quantities, sizes, types, prices), so each distinct
    /// item is decoded and measured once, not once per line.
    struct Remembered {
        page::PageBand band = page::PageBand::Body;
        page::Align align = page::Align::Left; // how it is placed
        bool placeable = false;
        bool inPieces = false; // a text too tall for one row: placed from the item itself
        bool hasCell = false;  // `cell` is known (the second pass)
        MadeCell cell;
    };

    /// What is known of the item `placed` at `ref`, decoded if it is new: its place in
    /// m_remembered, or kUnremembered when there is no room left there (then `scratch` holds
    /// it).
    std::uint32_t remember(ItemRef ref, const page::PlacedItem& placed, Remembered& scratch) {
        const auto [id, added] = m_remembered.findOrAdd(
            placed.flags, std::string_view(reinterpret_cast<const char*>(placed.content.data()),
                                           placed.content.size()));
        if (added || id == kUnremembered) {
            const page::Item& item = load(ref);
            Remembered& entry = id == kUnremembered ? scratch : m_remembered[id];
            entry = {};
            entry.band = pageBandOf(item);
            entry.align = placementOf(item).align;
            entry.placeable = isPlaceable(item);
            const auto* text = std::get_if<page::TextItem>(&item);
            entry.inPieces = text != nullptr && text->runs.size() > 1 &&
                             text->runs.size() > linesPerRow(pointsOf(*text));
        }
        return id;
    }

    /// The text an item (or the piece of it `ref` names) shows, or an empty view when it
    /// shows nothing: the text with its lines broken where the engine broke them, or the
    /// whole text as it is when the page printed less of it (a text cut at its box). The view
    /// lives as long as the item and until the next call, which also sets m_shownAsPrinted.
    std::string_view displayText(const page::Item& item) { return displayText(item, kWhole); }
    std::string_view displayText(const page::Item& item, const ItemRef& ref) {
        m_shownAsPrinted = false;
        if (const auto* check = std::get_if<page::CheckBoxItem>(&item)) {
            return check->checked ? kCheckedMark : std::string_view();
        }
        const auto* text = std::get_if<page::TextItem>(&item);
        if (text == nullptr) {
            return {};
        }
        if (ref.lines == 0 && !text->text.empty()) {
            m_shownAsPrinted = printedText(*text, m_joined);
            return m_shownAsPrinted ? std::string_view(m_joined) : std::string_view(text->text);
        }
        // A piece of a tall text, or a text known only by its lines.
        m_shownAsPrinted = true;
        m_joined.clear();
        bool first = true;
        for (const page::TextRun& run : runsOf(*text, ref)) {
            if (!first) {
                m_joined += '\n';
            }
            m_joined += run.text;
            first = false;
        }
        return m_joined;
    }

    /// Writes into `out` the text with a line break wherever the engine broke a line, its own
    /// line breaks (and blank lines) kept. False when the printed lines do not hold all of the
    /// text, or there are none.
    static bool printedText(const page::TextItem& text, std::string& out) {
        out.clear();
        const std::string_view all = text.text;
        std::size_t at = 0;
        for (const page::TextRun& run : text.runs) {
            if (run.text.empty()) {
                continue; // a blank line: its line break stands in the text
            }
            const std::size_t found = all.find(run.text, at);
            if (found == std::string_view::npos || !isBlank(all.substr(at, found - at))) {
                return false;
            }
            const std::string_view gap = all.substr(at, found - at);
            const auto breaks = static_cast<std::size_t>(std::count(gap.begin(), gap.end(), '\n'));
            out.append(out.empty() ? 0 : std::max<std::size_t>(breaks, 1), '\n');
            out += run.text;
            at = found + run.text.size();
        }
        return !out.empty() && isBlank(all.substr(at));
    }

    /// The printed lines of a text, or of the piece of it `ref` names.
    static std::span<const page::TextRun> runsOf(const page::TextItem& text, const ItemRef& ref) {
        std::span<const page::TextRun> runs(text.runs);
        if (ref.lines == 0 || ref.firstLine >= runs.size()) {
            return runs;
        }
        return runs.subspan(ref.firstLine,
                            std::min<std::size_t>(ref.lines, runs.size() - ref.firstLine));
    }

    const page::FontSpec& fontOf(int font) const {
        static const page::FontSpec kDefault;
        const bool known = font >= 0 && static_cast<std::size_t>(font) < m_pages.fonts.size();
        return known ? m_pages.fonts[static_cast<std::size_t>(font)] : kDefault;
    }

    double pointsOf(const page::TextItem& text) const { return fontOf(text.font).sizePoints; }

    /// The room a cell showing `shown` (displayText of `item` and `ref`, called last) needs:
    /// its widest line and all its lines. Lines shown as printed take their printed width; a
    /// text shown otherwise (cut on the page) is measured in its font.
    CellRoom roomOf(const page::Item& item, const ItemRef& ref, std::string_view shown) {
        const auto* text = std::get_if<page::TextItem>(&item);
        const bool asPrinted = text != nullptr && !text->runs.empty() && m_shownAsPrinted;
        if (!asPrinted) {
            return roomOfText(shown, text ? text->font : -1, placementOf(item).align);
        }
        CellRoom room;
        room.align = text->align;
        for (const page::TextRun& run : runsOf(*text, ref)) {
            room.width = std::max(room.width, lineRoom(run.width));
        }
        const auto breaks = std::count(shown.begin(), shown.end(), '\n');
        room.height = linesHeight(static_cast<std::size_t>(breaks) + 1, pointsOf(*text));
        return room;
    }

    /// The room `shown` needs in the report font `font`, each line measured.
    CellRoom roomOfText(std::string_view shown, int font, page::Align align) {
        CellRoom room;
        room.align = align;
        const page::FontSpec& spec = fontOf(font);
        std::size_t lines = 0;
        for (std::size_t start = 0; start <= shown.size(); ++lines) {
            const std::size_t end = std::min(shown.find('\n', start), shown.size());
            room.width = std::max(
                room.width, lineRoom(m_measurer.width(spec, shown.substr(start, end - start))));
            start = end + 1;
        }
        room.height = linesHeight(lines, spec.sizePoints);
        return room;
    }

    static std::optional<double> numberOf(const page::Item& item) {
        const auto* text = std::get_if<page::TextItem>(&item);
        if (text == nullptr || !text->numericValue || !std::isfinite(*text->numericValue)) {
            return std::nullopt;
        }
        return text->numericValue;
    }

    /// Whether the item shows anything: a number, a checked box, or a text that is not blank.
    /// A text shown as its printed lines is blank exactly when the whole text is, so the lines
    /// need not be put together to know.
    static bool isPlaceable(const page::Item& item) {
        if (numberOf(item)) {
            return true;
        }
        if (const auto* check = std::get_if<page::CheckBoxItem>(&item)) {
            return check->checked;
        }
        const auto* text = std::get_if<page::TextItem>(&item);
        if (text == nullptr) {
            return false;
        }
        if (!text->text.empty()) {
            return !isBlank(text->text);
        }
        return std::any_of(text->runs.begin(), text->runs.end(),
                           [](const page::TextRun& run) { return !isBlank(run.text); });
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

    // --- rows ---------------------------------------------------------------------------

    /// The first pass: which rows each page makes, which placements the texts have and how
    /// often, the row layouts the columns are chosen from, and the sheet's footer.
    void placeRows() {
        std::vector<Source> sources;
        bool headerShown = false;
        m_takesHeader.reserve(m_pages.pages.size());
        for (std::uint32_t p = 0; p < m_pages.pages.size(); ++p) {
            m_takesHeader.push_back(!headerShown);
            const PageScan scan = scanPage(p, !headerShown, sources, true);
            headerShown = headerShown || scan.hasHeader;
            m_footerPage = scan.hasFooter && m_footerPage < 0 ? static_cast<int>(p) : m_footerPage;
            placePage(sources);
        }
        placeFooter();
    }

    struct PageScan {
        bool hasHeader = false;
        bool hasFooter = false;
    };

    /// Writes the texts of page `p` into `out` in reading order: the body, and the header
    /// too when `takeHeader`. With `noteFooters`, the footer's texts are noted for the sheet's
    /// footer.
    PageScan scanPage(std::uint32_t p, bool takeHeader, std::vector<Source>& out,
                      bool noteFooters) {
        if (m_remembered.full()) {
            m_remembered.clear(); // between pages: no source of this page refers to it yet
        }
        const page::ItemList& list = m_pages.pages[p].items;
        out.clear();
        PageScan scan;
        Remembered scratch;
        for (std::uint32_t i = 0; i < list.size(); ++i) {
            const page::PlacedItem placed = list.placed(i);
            if (placed.kind != page::itemKind<page::TextItem>() &&
                placed.kind != page::itemKind<page::CheckBoxItem>()) {
                continue; // lines and rectangles show nothing in a cell
            }
            const ItemRef ref{p, i};
            const std::uint32_t id = remember(ref, placed, scratch);
            const Remembered* known = id == kUnremembered ? &scratch : &m_remembered[id];
            scan.hasHeader = scan.hasHeader || known->band == page::PageBand::Header;
            scan.hasFooter = scan.hasFooter || known->band == page::PageBand::Footer;
            if (known->band == page::PageBand::Footer) {
                if (noteFooters) {
                    noteFooter(load(ref), ref);
                }
            } else if ((known->band == page::PageBand::Body || takeHeader) && known->placeable) {
                if (known->inPieces) {
                    addSources(load(ref), ref, out);
                } else {
                    const Placement place{placed.box.x, placed.box.x + placed.box.width,
                                          known->align};
                    out.push_back({ref, placed.box.y, place, id});
                }
            }
        }
        sortByReading(out);
        return scan;
    }

    static void sortByReading(std::vector<Source>& sources) {
        const auto before = [](const Source& a, const Source& b) {
            return a.top != b.top ? a.top < b.top : a.place.left < b.place.left;
        };
        // A page's items mostly come in reading order already (rows top to bottom, a row's
        // controls left to right): then there is nothing to sort and no buffer to take.
        if (!std::is_sorted(sources.begin(), sources.end(), before)) {
            std::stable_sort(sources.begin(), sources.end(), before);
        }
    }

    /// Calls `visit` with the sources of each row, in order: sources whose tops lie within the
    /// tolerance of the row's first top.
    template <class Visit> static void forEachRow(std::span<const Source> sources, Visit&& visit) {
        std::size_t begin = 0;
        for (std::size_t i = 1; i <= sources.size(); ++i) {
            if (i == sources.size() || sources[i].top - sources[begin].top > kRowTolerance) {
                visit(sources.subspan(begin, i - begin));
                begin = i;
            }
        }
    }

    /// The footer of the first page that has one goes to the sheet's footer; what Excel has no
    /// room for there shows once, below the last row.
    void placeFooter() {
        const SheetFooter footer = sheetFooter(m_footerItems, footerPageWidth(), m_footerPage + 1,
                                               static_cast<int>(m_pages.pages.size()));
        m_grid.footer = footer.text;
        for (std::size_t i : footer.leftOver) {
            addSources(load(m_footerRefs[i]), m_footerRefs[i], m_footerSources);
        }
        sortByReading(m_footerSources);
        placePage(m_footerSources);
    }

    static page::PageBand pageBandOf(const page::Item& item) {
        if (const auto* text = std::get_if<page::TextItem>(&item)) {
            return text->pageBand;
        }
        if (const auto* check = std::get_if<page::CheckBoxItem>(&item)) {
            return check->pageBand;
        }
        return page::PageBand::Body;
    }

    /// The footer of the first page that has one becomes the sheet's footer.
    void noteFooter(const page::Item& item, ItemRef ref) {
        const auto* text = std::get_if<page::TextItem>(&item);
        if ((m_footerPage < 0 || m_footerPage == static_cast<int>(ref.page)) && text != nullptr &&
            !isBlank(displayText(item))) {
            m_footerPage = static_cast<int>(ref.page);
            m_footerItems.push_back(*text);
            m_footerItems.back().text = displayText(item);
            m_footerRefs.push_back(ref);
        }
    }

    int footerPageWidth() const {
        return m_footerPage < 0 ? page::kLetterWidth
                                : m_pages.pages[static_cast<std::size_t>(m_footerPage)].width;
    }

    /// The item as one source, or a text too tall for one row as pieces of as many lines as
    /// a row holds, each where its first line stands.
    void addSources(const page::Item& item, ItemRef ref, std::vector<Source>& out) const {
        const auto* text = std::get_if<page::TextItem>(&item);
        const std::size_t perRow = text && text->runs.size() > 1 ? linesPerRow(pointsOf(*text)) : 1;
        if (text == nullptr || text->runs.size() <= perRow) {
            out.push_back({ref, topOf(item), placementOf(item)});
            return;
        }
        const int lineOffset = text->box.y - text->runs.front().baseline;
        for (std::size_t first = 0; first < text->runs.size(); first += perRow) {
            ref.firstLine = static_cast<std::uint32_t>(first);
            ref.lines = static_cast<std::uint32_t>(std::min(perRow, text->runs.size() - first));
            const int top = first == 0 ? text->box.y : text->runs[first].baseline + lineOffset;
            out.push_back({ref, top, placementOf(item)});
        }
    }

    /// Rows of one page: each adds a row to the grid and counts its placements; a row laid
    /// out unlike the row before keeps its layout for the column choice.
    void placePage(const std::vector<Source>& sources) {
        std::vector<std::uint32_t> keys;
        forEachRow(sources, [&](std::span<const Source> row) {
            m_grid.rowHeights.push_back(0);
            keys.clear();
            for (const Source& source : row) {
                keys.push_back(keyOf(source.place));
            }
            m_placedCount += row.size();
            if (keys != m_lastLayout) {
                m_layouts.insert(keys);
                m_lastLayout = keys;
            }
        });
    }

    /// The key of `place`, counted once more; a new key when the placement is new. Keys
    /// are numbered in the order the placements came, as m_keyIndex numbers them.
    std::uint32_t keyOf(const Placement& place) {
        const auto [key, added] = m_keyIndex.findOrAdd(tagOf(place), bytesOf(place).view());
        if (added) {
            m_keys.push_back({place, 0, 0});
        }
        ++m_keys[key].count;
        return key;
    }

    /// A placement as the key m_keyIndex knows it by: its alignment as the tag, its edges
    /// as the bytes.
    struct EdgeBytes {
        std::array<char, 2 * sizeof(int)> bytes;
        std::string_view view() const { return {bytes.data(), bytes.size()}; }
    };
    static EdgeBytes bytesOf(const Placement& place) {
        EdgeBytes edges;
        std::memcpy(edges.bytes.data(), &place.left, sizeof(int));
        std::memcpy(edges.bytes.data() + sizeof(int), &place.right, sizeof(int));
        return edges;
    }
    static std::uint32_t tagOf(const Placement& place) {
        return static_cast<std::uint32_t>(place.align);
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
    /// Each distinct row layout is looked at once.
    BitTable rowConflicts(const std::vector<std::int32_t>& movable, std::size_t movableCount,
                          std::uint32_t clusters) const {
        BitTable table(movableCount, clusters);
        for (const std::vector<std::uint32_t>& layout : m_layouts) {
            for (std::size_t i = 0; i < layout.size(); ++i) {
                if (movable[layout[i]] < 0) {
                    continue;
                }
                for (std::size_t j = 0; j < layout.size(); ++j) {
                    if (j != i) {
                        table.set(static_cast<std::size_t>(movable[layout[i]]),
                                  m_keys[layout[j]].cluster);
                    }
                }
            }
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
            std::size_t j = i;
            for (; j < order.size() && m_keys[order[j]].cluster == first.cluster &&
                   m_keys[order[j]].place.left == first.place.left;
                 ++j) {
                count += m_keys[order[j]].count;
            }
            ClusterInfo& info = infos[first.cluster];
            if (!info.used || count > info.leftCount) {
                info.left = first.place.left;
                info.leftCount = count;
            }
            info.used = true;
            info.id = first.cluster;
            i = j;
        }
        return infos;
    }

    /// Orders the clusters by their usual left edge and turns them into columns as wide as
    /// the spacing to the next one (the last, and columns starting almost together, only as
    /// wide as the least column): the room their texts need is given later, from the texts
    /// themselves, not from how far a box reaches (a memo's box spans the page).
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
                int width = last ? 0 : infos[c + 1].left - infos[c].left;
                m_grid.columns.push_back({infos[c].left, std::max(width, kMinColumnWidth)});
            }
        }
    }

    // --- cells --------------------------------------------------------------------------

    /// The second pass: the pages read again in the same order give the same rows, now
    /// turned into cells.
    void fillCells() {
        m_grid.cells.reserve(m_placedCount);
        m_rooms.emplace(m_grid);
        std::vector<Source> sources;
        std::uint32_t row = 0;
        for (std::uint32_t p = 0; p < m_pages.pages.size(); ++p) {
            scanPage(p, m_takesHeader[p], sources, false);
            fillRows(sources, row);
        }
        fillRows(m_footerSources, row);
        m_rooms->finish();
    }

    void fillRows(const std::vector<Source>& sources, std::uint32_t& row) {
        std::vector<RowEntry> entries;
        forEachRow(sources, [&](std::span<const Source> cellsOfRow) {
            entries.clear();
            for (const Source& source : cellsOfRow) {
                const KeyInfo& key =
                    m_keys[m_keyIndex.findOrAdd(tagOf(source.place), bytesOf(source.place).view())
                               .first];
                entries.push_back({m_columnOfCluster[key.cluster], key.place.left, source.ref,
                                   source.remembered});
            }
            std::stable_sort(
                entries.begin(), entries.end(), [](const RowEntry& a, const RowEntry& b) {
                    return a.column != b.column ? a.column < b.column : a.left < b.left;
                });
            for (const RowEntry& entry : entries) {
                if (!m_grid.cells.empty() && m_grid.cells.back().row == row &&
                    m_grid.cells.back().column == entry.column) {
                    joinInto(m_grid.cells.back(), entry.ref);
                } else {
                    addCell(row, entry);
                }
            }
            ++row;
        });
    }

    MadeCell makeCell(const page::Item& item, const ItemRef& ref) {
        MadeCell made;
        CellStyle style;
        style.align = placementOf(item).align;
        if (const auto* text = std::get_if<page::TextItem>(&item)) {
            bool known =
                text->font >= 0 && static_cast<std::size_t>(text->font) < m_pages.fonts.size();
            style.font = known ? text->font : -1;
        }
        const std::string_view shown = displayText(item, ref);
        made.room = roomOf(item, ref, shown);
        if (auto number = numberOf(item); number && ref.lines == 0) {
            made.cell.kind = CellKind::Number;
            made.cell.number = *number;
            style.format = internFormat(std::get<page::TextItem>(item).format);
        } else {
            made.cell.kind = CellKind::Text;
            made.cell.text = internText(shown);
            style.wrap = shown.find('\n') != std::string_view::npos;
            made.room.mayMerge = true;
        }
        made.cell.style = internStyle(style);
        return made;
    }

    void addCell(std::uint32_t row, const RowEntry& entry) {
        MadeCell made;
        if (entry.remembered == kUnremembered) {
            made = makeCell(load(entry.ref), entry.ref);
        } else {
            Remembered& known = m_remembered[entry.remembered];
            if (!known.hasCell) {
                known.cell = makeCell(load(entry.ref), entry.ref);
                known.hasCell = true;
            }
            made = known.cell;
        }
        Cell& cell = m_grid.cells.emplace_back(made.cell);
        cell.row = row;
        cell.column = static_cast<std::uint8_t>(entry.column);
        m_rooms->need(m_grid.cells.size() - 1, made.room);
        m_cellRef = entry.ref;
        m_cellTextKnown = false;
    }

    /// Two texts in one cell: the cell becomes the text of both, joined by a space, and needs
    /// the room of both side by side.
    void joinInto(Cell& cell, const ItemRef& ref) {
        if (!m_cellTextKnown) {
            m_cellText.assign(displayText(load(m_cellRef), m_cellRef));
            m_cellTextKnown = true;
        }
        const std::string_view more = displayText(load(ref), ref);
        m_cellText += ' ';
        m_cellText += more;
        CellStyle style = m_grid.styles[cell.style];
        CellRoom room = roomOfText(m_cellText, style.font, style.align);
        room.mayMerge = true;
        m_rooms->need(m_grid.cells.size() - 1, room);
        style.format = 0;
        style.wrap = m_cellText.find('\n') != std::string_view::npos;
        cell.kind = CellKind::Text;
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
    std::vector<bool> m_takesHeader; // per page: its header is placed
    // What is known of distinct items (by their flags and content, page::PlacedItem).
    BytesMemo<Remembered> m_remembered{std::size_t{1} << 14, std::size_t{1} << 21};
    std::vector<Source> m_footerSources; // footer texts shown below the last row
    std::size_t m_placedCount = 0;
    std::set<std::vector<std::uint32_t>> m_layouts; // distinct rows, as their placements
    std::vector<std::uint32_t> m_lastLayout;
    std::vector<KeyInfo> m_keys;
    BytesMemo<char> m_keyIndex{std::numeric_limits<std::size_t>::max(),
                               std::numeric_limits<std::size_t>::max()}; // m_keys by placement
    std::vector<std::uint32_t> m_columnOfCluster;
    std::unordered_map<std::string_view, std::uint32_t> m_textIndex;
    std::unordered_map<std::uint64_t, std::uint16_t> m_styleIndex;
    std::uint32_t m_lastFormat = 0;
    std::optional<RoomGiver> m_rooms; // gives the cells their room as they are made
    std::vector<page::TextItem> m_footerItems;
    std::vector<ItemRef> m_footerRefs; // where each of m_footerItems stands
    int m_footerPage = -1;             // the page whose footer the sheet shows
    std::deque<std::string>
        m_texts;                   // distinct cell texts; a deque keeps them in place for the index
    ItemRef m_cellRef{};           // the item that made the last cell added
    std::string m_cellText;        // text of the last cell added, once a text joins it
    bool m_cellTextKnown = false;  // m_cellText holds it
    std::string m_joined;          // displayText() of a text shown as its printed lines
    bool m_shownAsPrinted = false; // the last displayText() gave the printed lines
    CairoTextMeasurer m_measurer;  // for texts shown otherwise than printed
    page::Item m_item;             // the item load() decoded last
};

} // namespace

CellGrid buildCellGrid(const page::Pages& pages) {
    return GridBuilder(pages).build();
}

} // namespace qr::output
