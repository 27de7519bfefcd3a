// The pagination arithmetic on its own: where bands go, when they move or are cut, and where
// the labels of a multi-column detail stand.
#include "platform/engine/fill/paginator.hpp"

#include <gtest/gtest.h>
#include <vector>

namespace qr::engine {
namespace {

using Action = Paginator::Action;

std::vector<Atom> lines(int count, int height = 240) {
    std::vector<Atom> atoms;
    for (int i = 0; i < count; ++i)
        atoms.push_back({i * height, (i + 1) * height});
    return atoms;
}

TEST(Paginator, DecidesWhereABandGoes) {
    // The body runs from 1000 to 5000: 4000 twips, as if a footer's space were already taken.
    struct Case {
        const char* what;
        int used;
        int height;
        bool keepTogether;
        std::vector<Atom> atoms;
        Paginator::Decision expected;
    };
    const std::vector<Case> cases = {
        {"fits exactly on an empty page", 0, 4000, false, lines(1, 4000), {Action::Place, 0}},
        {"fits below other bands", 3000, 1000, false, lines(1), {Action::Place, 0}},
        {"one line that does not fit moves", 3900, 240, false, lines(1), {Action::NewPage, 0}},
        {"lines are cut where the page ends", 3500, 720, false, lines(3), {Action::Split, 480}},
        {"kept together, they move", 3500, 720, true, lines(3), {Action::NewPage, 0}},
        {"content fits, blank space would hang over: moves",
         3500,
         1000,
         false,
         lines(1),
         {Action::NewPage, 0}},
        {"taller than a page, on an empty page: cut at a line",
         0,
         6000,
         false,
         lines(25),
         {Action::Split, 3840}},
        {"kept together but taller than a page: cut all the same",
         0,
         6000,
         true,
         lines(25),
         {Action::Split, 3840}},
        {"on an empty page only blank space hangs over: placed",
         0,
         6000,
         false,
         lines(1),
         {Action::Place, 0}},
        {"one part taller than a page: cut at the bottom",
         0,
         6000,
         false,
         {{0, 6000}},
         {Action::Split, 4000}},
        {"a rule is not cut from the figures under it: they move together",
         3900,
         340,
         false,
         {{23, 38, true}, {70, 290}},
         {Action::NewPage, 0}},
        {"on an empty page, nothing above the only cut: cut at the bottom",
         0,
         6000,
         false,
         {{23, 38, true}, {70, 5990}},
         {Action::Split, 4000}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Paginator p;
        p.beginPage(1000, 5000);
        p.advance(c.used);
        EXPECT_EQ(p.decide(c.height, c.keepTogether, c.atoms), c.expected);
    }
}

TEST(Paginator, AGroupFooterTakesTheBandsHeldAboveItAlong) {
    // The body runs from 1000 to 5000. `carry` is what stands held above the footer: the
    // group's last line and the footers already under it.
    struct Case {
        const char* what;
        int used;
        int height;
        std::vector<Atom> atoms;
        int carry;
        Paginator::Decision expected;
    };
    const std::vector<Atom> subtotal{{23, 38, true}, {70, 290}};
    const std::vector<Case> cases = {
        {"fits under the held line: placed", 3000, 340, subtotal, 240, {Action::Place, 0}},
        {"does not fit: the held line goes along",
         3900,
         340,
         subtotal,
         240,
         {Action::CarryOver, 0}},
        {"only blank space would hang over: carried all the same",
         3700,
         340,
         {{0, 240}},
         240,
         {Action::CarryOver, 0}},
        {"could be cut, but is carried whole", 3500, 720, lines(3), 240, {Action::CarryOver, 0}},
        {"the held lines are all the page holds: cut as alone",
         240,
         3900,
         {{0, 240}, {3660, 3900}},
         240,
         {Action::Split, 3660}},
        {"held lines and footer would not fit a page: moved as alone",
         3000,
         3500,
         lines(2, 1750),
         1000,
         {Action::NewPage, 0}},
        {"nothing held: moves alone", 3900, 340, subtotal, 0, {Action::NewPage, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Paginator p;
        p.beginPage(1000, 5000);
        p.advance(c.used);
        EXPECT_EQ(p.decide(c.height, false, c.atoms, c.carry), c.expected);
    }
}

TEST(Paginator, FindsTheLowestCutThatSplitsNothing) {
    struct Case {
        std::vector<Atom> atoms;
        int limit;
        int expected;
    };
    const std::vector<Case> cases = {
        {{}, 500, 500},
        {{{0, 240}}, 100, 0},
        {{{0, 240}, {240, 480}}, 400, 240},
        {{{0, 240}, {500, 740}}, 600, 500},
        {{{0, 300}, {100, 400}}, 350, 0},
        {{{0, 240}, {0, 480}, {240, 480}}, 479, 0},
        {{{0, 240}, {0, 480}, {240, 480}}, 480, 480},
        // A rule holds on to the first atom below it, not to the ones after.
        {{{23, 38, true}, {70, 290}}, 100, 23},
        {{{0, 240}, {253, 268, true}, {300, 540}, {540, 780}}, 400, 253},
        {{{0, 240}, {253, 268, true}, {300, 540}, {300, 600}, {600, 840}}, 700, 600},
    };
    for (size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(Paginator::findCut(cases[i].atoms, cases[i].limit), cases[i].expected);
    }
}

TEST(Paginator, ReservesThePageFooterSpaceItIsGiven) {
    Paginator p;
    p.beginPage(720, 15840 - 720 - 400);
    EXPECT_EQ(p.capacity(), 14000);
    p.advance(13800);
    EXPECT_TRUE(p.fits(200));
    EXPECT_FALSE(p.fits(201));
    EXPECT_FALSE(p.atTop());
}

TEST(Paginator, PlacesLabelsAcrossThenDownOrDownThenAcross) {
    struct Case {
        const char* what;
        ColumnSpec spec;
        int labels;
        std::vector<Paginator::Slot> expected;
    };
    const std::vector<Case> cases = {
        {"three across, two rows, then the page is full",
         {3, 100, 10, ColumnDirection::AcrossThenDown},
         7,
         {{true, 0, 0},
          {true, 110, 0},
          {true, 220, 0},
          {true, 0, 400},
          {true, 110, 400},
          {true, 220, 400},
          {false, 0, 0}}},
        {"two columns filled top to bottom",
         {2, 100, 0, ColumnDirection::DownThenAcross},
         5,
         {{true, 0, 0}, {true, 0, 400}, {true, 100, 0}, {true, 100, 400}, {false, 0, 0}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Paginator p;
        p.beginPage(0, 1000);
        std::vector<Paginator::Slot> slots;
        for (int i = 0; i < c.labels; ++i)
            slots.push_back(p.columnSlot(c.spec, 400));
        EXPECT_EQ(slots, c.expected);
    }
}

TEST(Paginator, LeavingColumnsContinuesBelowTheLowestLabel) {
    Paginator p;
    p.beginPage(0, 10000);
    const ColumnSpec spec{3, 100, 0, ColumnDirection::AcrossThenDown};
    p.columnSlot(spec, 300);
    p.columnSlot(spec, 500); // the row is as tall as its tallest label
    p.endColumns();
    EXPECT_EQ(p.cursor(), 500);
    // Columns started again begin a fresh row at the cursor.
    EXPECT_EQ(p.columnSlot(spec, 300), (Paginator::Slot{true, 0, 500}));
}

} // namespace
} // namespace qr::engine
