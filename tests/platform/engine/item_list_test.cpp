// Packed page items: every kind of item reads back as it was written, in order, through
// indexing, iteration and a reused scratch value; set() replaces one item in place.
#include "platform/core/error.hpp"
#include "platform/engine/page/item_list.hpp"
#include "platform/engine/page/name_pool.hpp"

#include <climits>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <ranges>
#include <string>
#include <thread>
#include <vector>

namespace qr::page {
namespace {

static_assert(std::ranges::random_access_range<ItemList>);
// Items come out as values: writing into one read back from the list must not compile, since
// it would change a temporary and leave the page as it was.
template <class List>
concept WritableInPlace = requires(List& list) {
    std::get<TextItem>(list[0]).text = "x";
    std::get<TextItem>(*list.begin()).text = "x";
};
static_assert(WritableInPlace<std::vector<Item>>);
static_assert(!WritableInPlace<ItemList>);

TextItem cell(std::string text, int x, int width, Align align = Align::Left) {
    TextItem t;
    t.box = {x, 3600, width, 220};
    t.font = 1;
    t.align = align;
    t.runs.push_back({align == Align::Right ? x + width - 300 : x, 3780, 300, text});
    t.text = std::move(text);
    t.control = "Field9";
    t.section = "Detail";
    return t;
}

TextItem numberCell(double value, std::string shown, std::string format) {
    TextItem t = cell(std::move(shown), 6600, 700, Align::Right);
    t.numericValue = value;
    t.format = std::move(format);
    return t;
}

TextItem withRuns(std::string text, std::vector<std::string> lines) {
    TextItem t = cell(std::move(text), 720, 3000);
    t.runs.clear();
    int baseline = 3780;
    for (auto& line : lines) {
        t.runs.push_back({720 + static_cast<int>(t.runs.size()) * 7, baseline, 400, line});
        baseline += 230;
    }
    return t;
}

struct RoundTrip {
    const char* name;
    Item item;
};

std::vector<RoundTrip> roundTrips() {
    TextItem coloured = cell("Total", 100, 900, Align::Center);
    coloured.color = 0x336699;
    coloured.background = 0xFFFFFF;
    TextItem blackBackground = cell("", 100, 900);
    blackBackground.runs.clear();
    blackBackground.background = kBlack;
    TextItem far = cell("far", INT_MAX - 10, 10);
    far.box.y = INT_MIN + 5;
    far.runs[0].x = INT_MIN;
    far.runs[0].baseline = INT_MAX;
    far.runs[0].width = -20;
    TextItem negative = cell("-", -300, 500);
    negative.box.height = -40;
    TextItem longNames = cell("x", 0, 10);
    longNames.control = std::string(NamePool::kMaxNameLength + 1, 'c');
    longNames.format = "\"" + std::string(300, 'f') + "\"#";
    longNames.font = -1;
    TextItem binary = cell(std::string("a\0b", 3), 0, 10);
    TextItem header = cell("Job Glass Report", 720, 4000, Align::Center);
    header.pageBand = PageBand::Header;
    TextItem footer = numberCell(3, "Page  1 of  3", "\"Page  1 of  \"#");
    footer.pageBand = PageBand::Footer;
    footer.font = -7; // a negative font index shares its varint with the band
    CheckBoxItem footerBox{{6480, 14400, 180, 180}, true, "CheckBox2", "PageFooter"};
    footerBox.pageBand = PageBand::Footer;
    return {
        {"plain cell", cell("24 15/16", 3100, 900)},
        {"utf-8 text", cell("Verre tremp\xC3\xA9 \xE2\x80\x94 6 mm", 600, 1100)},
        {"text holding a NUL", binary},
        {"money", numberCell(192.375, "$192.38", "$#,##0.00")},
        {"whole number", numberCell(5, "5", "")},
        {"negative fraction", numberCell(-0.1, "(0.10)", "#,##0.00")},
        {"negative zero", numberCell(-0.0, "0.00", "#,##0.00")},
        {"third", numberCell(1.0 / 3.0, "0.33", "0.00")},
        {"huge", numberCell(1e300, "1E+300", "")},
        {"beyond 2^53", numberCell(18014398509481988.0, "1.8E+16", "")},
        {"infinity", numberCell(std::numeric_limits<double>::infinity(), "inf", "")},
        {"denormal", numberCell(std::numeric_limits<double>::denorm_min(), "0", "")},
        {"lines as runs", withRuns("Line one\nLine two\n", {"Line one", "Line two", ""})},
        {"wrapped runs", withRuns("Insulated clear low-E", {"Insulated clear", "low-E"})},
        {"clipped runs", withRuns("one\ntwo\nthree", {"one", "two"})},
        {"runs out of order", withRuns("ab\ncd", {"cd", "ab"})},
        {"runs unlike the text", withRuns("Page 1", {"Page  1 of  3"})},
        {"empty run of empty text", withRuns("", {""})},
        {"text without runs", withRuns("hidden", {})},
        {"colour and background", coloured},
        {"black background", blackBackground},
        {"large coordinates", far},
        {"negative box", negative},
        {"names beyond the pool", longNames},
        {"empty names", TextItem{}},
        {"line", LineItem{720, 2160, 11520, 2160, 15, kBlack, "Line1", "PageHeader"}},
        {"line with negative extents",
         LineItem{9000, 5000, -200, -70, 0, 0xFF0000, "Line2", "GroupFooter1"}},
        {"line from negative start", LineItem{-5, -6, INT_MAX, INT_MIN, 45, kBlack, "L", "S"}},
        {"rectangle", RectItem{{720, 100, 50, 60}, 15, kBlack, std::nullopt, false, "Box", "D"}},
        {"rounded filled rectangle",
         RectItem{{720, 14400, 10800, 480}, 30, 0x00FF00, 0xD0E0F0, true, "Shape1", "PF"}},
        {"rectangle fill black, negative",
         RectItem{{-10, -20, -30, 40}, 0, kBlack, kBlack, false, "Shape2", "PF"}},
        {"checked box", CheckBoxItem{{6480, 3630, 180, 180}, true, "CheckBox1", "Detail"}},
        {"unchecked box", CheckBoxItem{{6480, -3870, 180, 180}, false, "CheckBox1", "Detail"}},
        {"page header text", header},
        {"page footer number, negative font", footer},
        {"page footer box", footerBox},
    };
}

TEST(ItemList, EveryKindOfItemReadsBackEqual) {
    const std::vector<RoundTrip> cases = roundTrips();
    ItemList list;
    for (const RoundTrip& c : cases)
        list.push_back(c.item);
    ASSERT_EQ(list.size(), cases.size());

    // A scratch value reused across all items must not keep anything of the one before.
    Item scratch = cell("left over", 1, 2);
    std::get<TextItem>(scratch).background = 0x123456;
    std::get<TextItem>(scratch).numericValue = 7.0;
    std::get<TextItem>(scratch).runs.resize(5);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(list[i], cases[i].item) << cases[i].name;
        list.decodeInto(i, scratch);
        EXPECT_EQ(scratch, cases[i].item) << cases[i].name;
    }
    std::size_t i = 0;
    for (const Item& item : list)
        EXPECT_EQ(item, cases[i++].item) << cases[i - 1].name;
    EXPECT_EQ(i, cases.size());

    // Read without names and run texts, everything else still reads back: a run's text is
    // either left out or whole, and the fields after the runs are read from the right place.
    for (std::size_t k = 0; k < cases.size(); ++k) {
        list.decodeInto(k, scratch, 0);
        Item expected = cases[k].item;
        if (auto* text = std::get_if<TextItem>(&expected)) {
            const auto& read = std::get<TextItem>(scratch);
            text->control.clear();
            text->section.clear();
            text->format.clear();
            for (std::size_t r = 0; r < text->runs.size() && r < read.runs.size(); ++r) {
                if (read.runs[r].text.empty() && !text->text.empty())
                    text->runs[r].text.clear();
            }
        } else if (auto* box = std::get_if<CheckBoxItem>(&expected)) {
            box->control.clear();
            box->section.clear();
        }
        EXPECT_EQ(scratch, expected) << cases[k].name;
    }
}

/// `item` moved by (dx, dy) and given other names.
Item movedAndRenamed(Item item, int dx, int dy) {
    std::visit(
        [&](auto& value) {
            using T = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<T, LineItem>) {
                value.x1 += dx, value.x2 += dx, value.y1 += dy, value.y2 += dy;
            } else {
                value.box.x += dx, value.box.y += dy;
            }
            if constexpr (std::is_same_v<T, TextItem>) {
                for (TextRun& run : value.runs)
                    run.x += dx, run.baseline += dy;
            }
            value.control = "Moved";
            value.section = "Elsewhere";
        },
        item);
    return item;
}

Rect boxOf(const Item& item) {
    if (const auto* line = std::get_if<LineItem>(&item))
        return {line->x1, line->y1, line->x2 - line->x1, line->y2 - line->y1};
    return std::visit(
        [](const auto& value) {
            if constexpr (requires { value.box; })
                return value.box;
            else
                return Rect{};
        },
        item);
}

/// `item` without its place and names: moved to the origin, its box (a line's extent) empty.
Item whatItIs(const Item& item) {
    const Rect box = boxOf(item);
    Item moved = movedAndRenamed(item, -box.x, -box.y);
    if (auto* line = std::get_if<LineItem>(&moved))
        line->x2 = line->y2 = 0;
    else
        std::visit(
            [](auto& value) {
                if constexpr (requires { value.box; })
                    value.box.width = value.box.height = 0;
            },
            moved);
    return moved;
}

// What a reader that derives the same from equal items relies on: the box read on its own,
// and equal flags and content only where the items differ in nothing but place and names.
TEST(ItemList, PlacedItemsTellWhereAnItemStandsFromWhatItIs) {
    std::vector<RoundTrip> cases = roundTrips();
    std::erase_if(cases, [](const RoundTrip& c) {
        return std::string(c.name).find("large") != std::string::npos ||
               std::string(c.name).find("negative start") != std::string::npos;
    });
    ItemList list;
    for (const RoundTrip& c : cases)
        list.push_back(c.item);
    for (const RoundTrip& c : cases)
        list.push_back(movedAndRenamed(c.item, 1440, 720));
    auto same = [&](std::size_t a, std::size_t b) {
        const PlacedItem x = list.placed(a), y = list.placed(b);
        return x.flags == y.flags && std::ranges::equal(x.content, y.content);
    };
    const std::size_t n = cases.size();
    for (std::size_t i = 0; i < n; ++i) {
        const PlacedItem placed = list.placed(i);
        EXPECT_EQ(placed.kind, cases[i].item.index()) << cases[i].name;
        EXPECT_EQ(placed.box, boxOf(cases[i].item)) << cases[i].name;
        EXPECT_EQ(list.placed(n + i).box, boxOf(list[n + i])) << cases[i].name;
        EXPECT_TRUE(same(i, n + i)) << cases[i].name << " moved";
        for (std::size_t j = 0; j < i; ++j) {
            if (whatItIs(cases[i].item) != whatItIs(cases[j].item)) {
                EXPECT_FALSE(same(i, j)) << cases[i].name << " and " << cases[j].name;
            }
        }
    }
}

TEST(ItemList, NumbersKeepEveryBit) {
    // Not a number included: it must stay a number that is not a number, not become empty.
    const double values[] = {
        0.1,   0.2,         0.3,      12.5,         37.5 * 3,          1e-9, 1.23e-7, 9.87e15,
        -7.25, 1234567.891, 2.5e-310, std::nan(""), 4503599627370497.0};
    ItemList list;
    for (double v : values)
        list.push_back(numberCell(v, "", ""));
    for (std::size_t i = 0; i < std::size(values); ++i) {
        const std::optional<double> back = std::get<TextItem>(list[i]).numericValue;
        ASSERT_TRUE(back.has_value()) << values[i];
        EXPECT_EQ(std::memcmp(&*back, &values[i], sizeof(double)), 0) << values[i];
    }
}

TEST(ItemList, TypicalCellsStaySmall) {
    // What the memory of a long report rests on: a detail cell of a table is a few dozen
    // bytes, not the hundreds its decoded form takes.
    ItemList list;
    for (int line = 0; line < 50; ++line) {
        TextItem quantity = numberCell(line % 5 + 1, std::to_string(line % 5 + 1), "");
        quantity.box.y = quantity.runs[0].baseline = 1440 + line * 220;
        quantity.runs[0].baseline += 180;
        TextItem size = cell(std::to_string(24 + line) + " 15/16", 3100, 900);
        size.box.y = 1440 + line * 220;
        size.runs[0].baseline = size.box.y + 180;
        list.push_back(quantity);
        list.push_back(size);
    }
    EXPECT_LE(list.encodedBytes() / list.size(), 40u);
}

TEST(ItemList, SetReplacesOneItemAndKeepsTheOthers) {
    const Item first = cell("first", 0, 100);
    const Item last = LineItem{0, 10, 100, 10, 15, kBlack, "Line1", "PageFooter"};
    struct Case {
        const char* name;
        Item replacement;
    };
    const Case cases[] = {
        {"longer", withRuns("Page 12 of 340", {"Page 12", "of 340"})},
        {"shorter", CheckBoxItem{{1, 2, 3, 4}, true, "", ""}},
        {"same size", cell("2nd", 0, 100)},
    };
    for (const Case& c : cases) {
        ItemList list{first, cell("second", 0, 100), last};
        list.set(1, c.replacement);
        ASSERT_EQ(list.size(), 3u) << c.name;
        EXPECT_EQ(list[0], first) << c.name;
        EXPECT_EQ(list[1], c.replacement) << c.name;
        EXPECT_EQ(list[2], last) << c.name;
        list.push_back(first); // appending after a set lands after the last item
        EXPECT_EQ(list.back(), first) << c.name;
        EXPECT_EQ(list[2], last) << c.name;
    }
}

TEST(ItemList, IteratesInInsertionOrder) {
    ItemList list;
    std::vector<Item> expected;
    for (int i = 0; i < 300; ++i) {
        Item item = i % 3 == 0 ? Item(cell(std::to_string(i), i * 10, 100))
                               : Item(LineItem{i, -i, i * 2, i * 3, 15, kBlack, "L", "S"});
        list.push_back(item);
        expected.push_back(item);
    }
    EXPECT_TRUE(std::ranges::equal(list, expected));
    EXPECT_EQ(*(list.begin() + 150), expected[150]);
    EXPECT_EQ(list.end() - list.begin(), 300);
    EXPECT_EQ(ItemList(expected), list);
    list.set(299, cell("changed", 0, 1));
    EXPECT_NE(ItemList(expected), list);
    list.clear();
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.begin(), list.end());
}

TEST(ItemList, ReadingOrReplacingPastTheEndIsAnError) {
    ItemList list{cell("only", 0, 10)};
    auto expectOutOfRange = [](auto call, const char* what) {
        try {
            call();
            ADD_FAILURE() << what << " did not raise";
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), errc::kSubscriptOutOfRange) << what;
        }
    };
    expectOutOfRange([&] { (void)list[1]; }, "list[1]");
    expectOutOfRange([&] { list.set(1, cell("x", 0, 1)); }, "set(1)");
    expectOutOfRange([] { (void)ItemList().back(); }, "back() of an empty list");
}

TEST(NamePool, SameNameSameIdAndNamesStayReadable) {
    NamePool pool;
    EXPECT_EQ(pool.intern(""), 0u);
    const auto detail = pool.intern("Detail");
    ASSERT_TRUE(detail.has_value());
    EXPECT_EQ(pool.intern(std::string("Det") + "ail"), detail);
    EXPECT_NE(pool.intern("Field1"), detail);
    EXPECT_EQ(pool.name(*detail), "Detail");
    EXPECT_EQ(pool.size(), 3u);
    EXPECT_FALSE(pool.intern(std::string(NamePool::kMaxNameLength + 1, 'x')));
    // Another pool on the same thread has ids of its own: what this thread remembers of one
    // pool never answers for the other.
    NamePool other;
    const auto field = other.intern("Field1");
    EXPECT_NE(field, pool.intern("Field1"));
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(pool.intern("Detail"), detail);
        EXPECT_EQ(other.intern("Field1"), field);
        EXPECT_EQ(other.name(*other.intern("Detail")), "Detail");
    }
}

TEST(NamePool, AFullPoolRefusesNewNamesButKeepsItsOwn) {
    struct Case {
        const char* name;
        std::size_t maxNames;
        std::size_t maxBytes;
        std::size_t taken; // names taken besides the empty one
    };
    const Case cases[] = {{"by count", 4, 1000, 3}, {"by characters", 1000, 10, 2}};
    for (const Case& c : cases) {
        NamePool pool(c.maxNames, c.maxBytes);
        std::vector<std::uint32_t> ids;
        for (int i = 0; i < 10; ++i) {
            if (auto id = pool.intern("name" + std::to_string(i)))
                ids.push_back(*id);
        }
        EXPECT_EQ(ids.size(), c.taken) << c.name;
        for (std::size_t i = 0; i < ids.size(); ++i) {
            EXPECT_EQ(pool.name(ids[i]), "name" + std::to_string(i)) << c.name;
            EXPECT_EQ(pool.intern("name" + std::to_string(i)), ids[i]) << c.name;
        }
    }
}

TEST(NamePool, ThreadsAgreeOnIds) {
    NamePool pool;
    constexpr int kThreads = 4;
    constexpr int kNames = 2000;
    std::vector<std::vector<std::uint32_t>> ids(kThreads);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < kNames; ++i) {
                // Each thread walks the names in its own order.
                const int n = (i * (t + 1) * 7919) % kNames;
                ids[t].push_back(*pool.intern("control" + std::to_string(n)));
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    for (int t = 0; t < kThreads; ++t) {
        for (int i = 0; i < kNames; ++i) {
            const int n = (i * (t + 1) * 7919) % kNames;
            EXPECT_EQ(pool.name(ids[t][i]), "control" + std::to_string(n));
        }
    }
    EXPECT_EQ(pool.size(), kNames + 1u);
}

} // namespace
} // namespace qr::page
