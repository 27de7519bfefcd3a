#pragma once
// Pagination arithmetic, kept apart from events and layout: where the next band goes on the
// page, whether it fits, moves to the next page or is cut, and where the labels of a
// multi-column detail stand. All values are twips from the top of the paper.

#include "platform/engine/design/report_design.hpp"

#include <span>

namespace qr::engine {

/// A vertical stretch of a band that must not be cut (one text line, a check box, a shape),
/// relative to the band's top. A rule (a horizontal line) opens what stands below it: a page
/// never ends with a rule whose band goes on on the next page.
struct Atom {
    int top = 0;
    int bottom = 0;
    bool rule = false;
};

/// The labels of a multi-column detail: how many, how wide, the gap, the fill order.
struct ColumnSpec {
    int count = 1;
    int width = 0;
    int spacing = 0;
    ColumnDirection direction = ColumnDirection::AcrossThenDown;
};

class Paginator {
  public:
    enum class Action {
        Place,   ///< put the band here (what hangs below the body is blank space only)
        NewPage, ///< start a new page, then try again
        Split,   ///< put the band's part above `cut` here, the rest on the next page
        /// Start a new page and move the bands placed last (the `carry` given to decide) to
        /// its top, then place the band below them.
        CarryOver,
    };
    struct Decision {
        Action action = Action::Place;
        int cut = 0;
        bool operator==(const Decision&) const = default;
    };

    /// A label's place: its left relative to the print area and its top; `fits` false means
    /// the page is full and the label belongs on the next page.
    struct Slot {
        bool fits = true;
        int x = 0;
        int y = 0;
        bool operator==(const Slot&) const = default;
    };

    /// Start a page whose bands may use the stretch from `top` down to `bottom` (the page
    /// footer's space is already left out of it).
    void beginPage(int top, int bottom);

    int top() const { return m_top; }
    int bottom() const { return m_bottom; }
    int cursor() const { return m_cursor; }
    int remaining() const { return m_bottom - m_cursor; }
    /// Height of an empty page's body.
    int capacity() const { return m_bottom - m_top; }
    /// Nothing placed on the page body yet.
    bool atTop() const { return m_cursor == m_top && !m_inColumns; }
    bool fits(int height) const { return height <= remaining(); }
    /// Move the cursor down by `height`.
    void advance(int height);

    /// Where a band of `height` whose uncuttable parts are `atoms` goes. A band that fits is
    /// placed. One that does not moves to a new page when it is kept together or when all its
    /// content would fit and only blank space would hang over; otherwise it is cut at the
    /// lowest point that fits, cuts no atom and leaves some of the band above it, or moves
    /// when there is none. On an empty page a band is placed when only blank space hangs over,
    /// else cut where it can be, or at the bottom of the body when nothing else is possible.
    ///
    /// `carry` is the height of the bands placed last that must not be parted from this one
    /// (a group's last detail and the footers after it, for a group footer). A band with a
    /// carry that would move or be cut takes the carry with it to the next page instead
    /// (CarryOver), so it never opens a page alone; unless the carry is all the page holds,
    /// or it and the band together would not fit an empty page, when the rules above apply.
    Decision decide(int height, bool keepTogether, std::span<const Atom> atoms,
                    int carry = 0) const;

    /// The lowest y in (0, limit] that cuts no atom (an atom is cut when top < y < bottom)
    /// and parts no rule from the atom below it; 0 when there is none.
    static int findCut(std::span<const Atom> atoms, int limit);

    /// Place the next label of `height` in a multi-column detail.
    Slot columnSlot(const ColumnSpec& spec, int height);
    /// Leave column mode: the cursor stands below the lowest label placed.
    void endColumns() { m_inColumns = false; }

  private:
    Decision decideAlone(int height, bool keepTogether, std::span<const Atom> atoms) const;
    Slot acrossSlot(const ColumnSpec& spec, int height);
    Slot downSlot(const ColumnSpec& spec, int height);

    int m_top = 0;
    int m_bottom = 0;
    int m_cursor = 0;

    bool m_inColumns = false;
    int m_column = 0;
    int m_rowTop = 0;    // across: top of the current row of labels
    int m_rowHeight = 0; // across: tallest label of the current row
    int m_columnY = 0;   // down: where the next label of the current column goes
    int m_columnsTop = 0;
};

} // namespace qr::engine
