#pragma once
// Pagination arithmetic, kept apart from events and layout: where the next band goes on the
// page, whether it fits, moves to the next page or is cut, and where the labels of a
// multi-column detail stand. All values are twips from the top of the paper.

#include "platform/engine/design/report_design.hpp"

#include <span>

namespace qr::engine {

/// A vertical stretch of a band that must not be cut (one text line, a check box, a shape),
/// relative to the band's top.
struct Atom {
    int top = 0;
    int bottom = 0;
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
    /// lowest point that fits and cuts no atom, or moves when there is none. On an empty page
    /// a band is placed when only blank space hangs over, else cut where it can be, or at the
    /// bottom of the body when nothing else is possible.
    Decision decide(int height, bool keepTogether, std::span<const Atom> atoms) const;

    /// The lowest y in (0, limit] that cuts no atom (an atom is cut when top < y < bottom);
    /// 0 when there is none.
    static int findCut(std::span<const Atom> atoms, int limit);

    /// Place the next label of `height` in a multi-column detail.
    Slot columnSlot(const ColumnSpec& spec, int height);
    /// Leave column mode: the cursor stands below the lowest label placed.
    void endColumns() { m_inColumns = false; }

  private:
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
