#include "platform/engine/fill/paginator.hpp"

#include <algorithm>
#include <climits>

namespace qr::engine {

void Paginator::beginPage(int top, int bottom) {
    m_top = top;
    m_bottom = bottom;
    m_cursor = top;
    m_inColumns = false;
}

void Paginator::advance(int height) {
    m_cursor += height;
}

Paginator::Decision Paginator::decide(int height, bool keepTogether, std::span<const Atom> atoms,
                                      int carry) const {
    const Decision alone = decideAlone(height, keepTogether, atoms);
    if (alone.action == Action::Place || carry <= 0)
        return alone;
    // Moving the carry helps only when something stays behind on this page, and only when the
    // carry and the band fit a page together (a page after this one is at least as roomy).
    const bool carryIsThePage = m_cursor - carry <= m_top;
    if (carryIsThePage || carry + height > capacity())
        return alone;
    return {Action::CarryOver, 0};
}

Paginator::Decision Paginator::decideAlone(int height, bool keepTogether,
                                           std::span<const Atom> atoms) const {
    const int room = remaining();
    if (height <= room)
        return {Action::Place, 0};
    // A page whose header and footer leave no body takes the band as it is.
    if (atTop() && room <= 0)
        return {Action::Place, 0};
    int lastBottom = 0;
    for (const Atom& a : atoms)
        lastBottom = std::max(lastBottom, a.bottom);
    const bool onlyBlankOver = lastBottom <= room;

    // A cut is worth making only when some of the band prints above it.
    int cut = findCut(atoms, room);
    const bool anythingAbove =
        std::any_of(atoms.begin(), atoms.end(), [cut](const Atom& a) { return a.bottom <= cut; });
    if (!anythingAbove)
        cut = 0;

    if (!atTop()) {
        if (keepTogether || onlyBlankOver)
            return {Action::NewPage, 0};
        return cut > 0 ? Decision{Action::Split, cut} : Decision{Action::NewPage, 0};
    }
    // On an empty page: what cannot move on is cut, at the bottom of the body when nothing
    // else is possible.
    if (onlyBlankOver)
        return {Action::Place, 0};
    return {Action::Split, cut > 0 ? cut : room};
}

int Paginator::findCut(std::span<const Atom> atoms, int limit) {
    // A rule and the first atom standing below it are one stretch: a cut between them would
    // end a page with the rule and open the next with what the rule heads.
    auto gluedBottom = [&](const Atom& rule) {
        int nextTop = INT_MAX;
        int bottom = rule.bottom;
        for (const Atom& a : atoms) {
            if (&a == &rule || a.top < rule.bottom || a.top > nextTop)
                continue;
            bottom = a.top < nextTop ? a.bottom : std::max(bottom, a.bottom);
            nextTop = a.top;
        }
        return bottom;
    };
    auto cutsNothing = [&](int y) {
        return std::none_of(atoms.begin(), atoms.end(), [&](const Atom& a) {
            const int bottom = a.rule ? gluedBottom(a) : a.bottom;
            return a.top < y && y < bottom;
        });
    };
    int best = 0;
    auto consider = [&](int y) {
        if (y > best && y <= limit && cutsNothing(y))
            best = y;
    };
    consider(limit);
    if (best == limit)
        return best;
    for (const Atom& a : atoms) {
        consider(a.top);
        consider(a.bottom);
    }
    return best;
}

Paginator::Slot Paginator::columnSlot(const ColumnSpec& spec, int height) {
    return spec.direction == ColumnDirection::AcrossThenDown ? acrossSlot(spec, height)
                                                             : downSlot(spec, height);
}

Paginator::Slot Paginator::acrossSlot(const ColumnSpec& spec, int height) {
    if (!m_inColumns) {
        m_inColumns = true;
        m_column = 0;
        m_rowTop = m_cursor;
        m_rowHeight = 0;
    } else if (m_column >= spec.count) {
        m_rowTop += m_rowHeight;
        m_column = 0;
        m_rowHeight = 0;
    }
    const bool pageEmpty = m_rowTop == m_top && m_column == 0;
    if (m_rowTop + height > m_bottom && !pageEmpty)
        return {false, 0, 0};
    Slot slot{true, m_column * (spec.width + spec.spacing), m_rowTop};
    ++m_column;
    m_rowHeight = std::max(m_rowHeight, height);
    m_cursor = std::max(m_cursor, m_rowTop + m_rowHeight);
    return slot;
}

Paginator::Slot Paginator::downSlot(const ColumnSpec& spec, int height) {
    if (!m_inColumns) {
        m_inColumns = true;
        m_column = 0;
        m_columnsTop = m_cursor;
        m_columnY = m_cursor;
    }
    if (m_columnY + height > m_bottom && m_columnY > m_columnsTop) {
        ++m_column;
        m_columnY = m_columnsTop;
    }
    if (m_column >= spec.count)
        return {false, 0, 0};
    Slot slot{true, m_column * (spec.width + spec.spacing), m_columnY};
    m_columnY += height;
    m_cursor = std::max(m_cursor, m_columnY);
    return slot;
}

} // namespace qr::engine
