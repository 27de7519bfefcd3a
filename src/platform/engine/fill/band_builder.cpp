#include "platform/engine/fill/band_builder.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/number_format.hpp"
#include "platform/engine/controls.hpp"

#include <algorithm>
#include <climits>
#include <numeric>

namespace qr::engine {

namespace {

// Check boxes print a square no larger than this, however tall their box.
constexpr int kCheckSquare = 200;
constexpr int kCheckCaptionGap = 60;

/// CR LF and CR become LF, as the print model writes line breaks.
void normaliseLineBreaks(std::string& text) {
    if (text.find('\r') == std::string::npos)
        return;
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r') {
            out += text[i];
        } else {
            out += '\n';
            if (i + 1 < text.size() && text[i + 1] == '\n')
                ++i;
        }
    }
    text = std::move(out);
}

std::string joinRuns(const std::vector<page::TextRun>& runs) {
    std::string out;
    for (const page::TextRun& run : runs) {
        if (!out.empty())
            out += '\n';
        out += run.text;
    }
    return out;
}

page::PageBand pageBandOf(const Section& section) {
    switch (section.kind()) {
    case SectionKind::PageHeader:
        return page::PageBand::Header;
    case SectionKind::PageFooter:
        return page::PageBand::Footer;
    default:
        return page::PageBand::Body;
    }
}

} // namespace

BandBuilder::BandBuilder(TextLayout& text, SubReportRunner runSubReport)
    : m_text(text), m_runSubReport(std::move(runSubReport)) {}

int BandBuilder::fontOf(Control& control) {
    if (control.m_fontIndex < 0)
        control.m_fontIndex = m_text.fontIndex(control.font());
    return control.m_fontIndex;
}

void BandBuilder::build(Section& section, Band& band) {
    band.clear();
    band.pageBand = pageBandOf(section);
    m_placed.clear();
    const bool sectionGrows = section.canGrow();
    for (Control* control : section.controls()) {
        if (!control->visible())
            continue;
        Placed placed;
        const page::Rect& r = control->settings().rect;
        placed.top = std::min(r.y, r.y + r.height);
        placed.bottom = std::max(r.y, r.y + r.height);
        placed.firstItem = band.items.size();
        placed.firstSource = band.sources.size();
        placed.growth = addControl(*control, section, sectionGrows, band);
        placed.endItem = band.items.size();
        placed.endSource = band.sources.size();
        m_placed.push_back(placed);
    }
    band.height = section.height();
    if (sectionGrows)
        pushDown(m_placed, band, section.height());
}

int BandBuilder::addControl(Control& control, const Section& section, bool grow, Band& band) {
    const ControlDesign& s = control.settings();
    switch (control.kind()) {
    case ControlKind::Label:
        return addText(control, section, s.caption, grow && s.canGrow, band);
    case ControlKind::TextBox: {
        auto& box = static_cast<TextBox&>(control);
        const SummaryKind kind = box.summary().kind;
        if (kind == SummaryKind::PageCount || kind == SummaryKind::PageNumber) {
            addDeferred(box, section, band);
            return 0;
        }
        return addText(control, section, box.finalText(), grow && s.canGrow, band);
    }
    case ControlKind::CheckBox:
        addCheckBox(control, section, band);
        return 0;
    case ControlKind::Line:
        band.items.emplace_back(page::LineItem{s.rect.x, s.rect.y, s.rect.x + s.rect.width,
                                               s.rect.y + s.rect.height, s.lineWeight, s.color,
                                               s.name, section.name()});
        return 0;
    case ControlKind::Shape:
        band.items.emplace_back(page::RectItem{s.rect, s.lineWeight, s.color, s.background,
                                               s.style == ShapeStyle::RoundRectangle, s.name,
                                               section.name()});
        return 0;
    case ControlKind::SubReport:
        return addSubReport(static_cast<SubReport&>(control), section, band);
    }
    return 0;
}

int BandBuilder::addText(Control& control, const Section& section, std::string text, bool grow,
                         Band& band) {
    const ControlDesign& s = control.settings();
    ItemSource source{-1, &control, control.m_revision, s.rect};
    if (text.empty() && !s.background) {
        // Nothing to draw; remembered in case a BeforePrint handler gives it a text.
        band.sources.push_back(source);
        return 0;
    }
    page::TextItem item;
    item.box = s.rect;
    item.font = fontOf(control);
    item.align = s.align;
    item.color = s.color;
    item.background = s.background;
    item.control = s.name;
    item.section = section.name();
    item.pageBand = band.pageBand;
    const TextLayout::Result laid = fillText(item, control, std::move(text), grow);
    const int growth = grow ? std::max(0, laid.height - item.box.height) : 0;
    item.box.height += growth;
    source.item = static_cast<int>(band.items.size());
    source.box = item.box;
    markCut(band, source.item, item, laid.cut, s.clips);
    band.items.emplace_back(std::move(item));
    band.sources.push_back(source);
    return growth;
}

void BandBuilder::markCut(Band& band, int index, const page::TextItem& item, bool cut,
                          bool clipped) {
    std::erase_if(band.cuts, [index](const CutMark& m) { return m.item == index; });
    if (cut)
        band.cuts.push_back(CutMark{index, item.text, joinRuns(item.runs), clipped});
}

TextLayout::Result BandBuilder::fillText(page::TextItem& item, Control& control, std::string text,
                                         bool grow) {
    item.text = std::move(text);
    normaliseLineBreaks(item.text);
    const int maxHeight = grow ? INT_MAX : item.box.height;
    const TextLayout::Result laid =
        m_text.layout(item.text, item.font, item.box.width, item.align, control.settings().wordWrap,
                      maxHeight, item.runs);
    for (page::TextRun& run : item.runs) {
        run.x += item.box.x;
        run.baseline += item.box.y;
    }
    item.numericValue.reset();
    item.format.clear();
    if (control.m_number && control.kind() != ControlKind::CheckBox) {
        item.numericValue = control.m_number->value;
        item.format = control.m_number->format;
    } else if (control.kind() == ControlKind::TextBox) {
        auto& box = static_cast<TextBox&>(control);
        if (box.m_source == TextBox::TextSource::Formatted && box.m_value.isNumeric()) {
            // The decimal value the format rounded, as printed (a Single at its 7 digits).
            item.numericValue = shownNumber(box.m_value).value_or(toDouble(box.m_value));
            item.format = box.outputFormat();
        }
    }
    return laid;
}

void BandBuilder::addDeferred(TextBox& box, const Section& section, Band& band) {
    const ControlDesign& s = box.settings();
    page::TextItem item;
    item.box = s.rect;
    item.font = fontOf(box);
    item.align = s.align;
    item.color = s.color;
    item.background = s.background;
    item.control = s.name;
    item.section = section.name();
    item.pageBand = band.pageBand;
    band.deferred.push_back(DeferredText{static_cast<int>(band.items.size()), s.summary.kind,
                                         s.outputFormat, s.wordWrap, s.clips});
    band.items.emplace_back(std::move(item));
}

void BandBuilder::addCheckBox(Control& control, const Section& section, Band& band) {
    const auto& box = static_cast<CheckBox&>(control);
    const ControlDesign& s = box.settings();
    const int side = std::min({s.rect.width, s.rect.height, kCheckSquare});
    const page::Rect square{s.rect.x, s.rect.y + (s.rect.height - side) / 2, side, side};
    band.sources.push_back(
        ItemSource{static_cast<int>(band.items.size()), &control, control.m_revision, square});
    band.items.emplace_back(
        page::CheckBoxItem{square, box.checked(), s.name, section.name(), band.pageBand});
    if (s.caption.empty())
        return;
    page::TextItem caption;
    const int left = side + kCheckCaptionGap;
    caption.box = {s.rect.x + left, s.rect.y, std::max(0, s.rect.width - left), s.rect.height};
    caption.font = fontOf(control);
    caption.align = s.align;
    caption.color = s.color;
    caption.control = s.name;
    caption.section = section.name();
    caption.pageBand = band.pageBand;
    const TextLayout::Result laid = fillText(caption, control, s.caption, false);
    markCut(band, static_cast<int>(band.items.size()), caption, laid.cut, s.clips);
    band.items.emplace_back(std::move(caption));
}

int BandBuilder::addSubReport(SubReport& box, const Section&, Band& band) {
    if (box.report() == nullptr)
        return 0;
    m_strip.clear();
    m_runSubReport(box, m_strip);
    for (page::Item& item : m_strip.items)
        setPageBand(item, band.pageBand);
    const int growth = std::max(0, m_strip.height - box.height());
    append(m_strip, box.left(), box.top(), band);
    return growth;
}

void BandBuilder::append(Band& from, int dx, int dy, Band& to) {
    const int base = static_cast<int>(to.items.size());
    for (page::Item& item : from.items) {
        offset(item, dx, dy);
        to.items.push_back(std::move(item));
    }
    for (DeferredText& d : from.deferred) {
        d.item += base;
        to.deferred.push_back(std::move(d));
    }
    for (CutMark& m : from.cuts) {
        m.item += base;
        to.cuts.push_back(std::move(m));
    }
    from.clear();
}

void BandBuilder::pushDown(std::vector<Placed>& placed, Band& band, int designHeight) {
    const bool anyGrowth =
        std::any_of(placed.begin(), placed.end(), [](const Placed& p) { return p.growth > 0; });
    if (!anyGrowth)
        return;
    // Whatever stands wholly below a grown control moves down with it, so texts that grow do
    // not run over the controls under them.
    std::vector<size_t> order(placed.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t a, size_t b) { return placed[a].top < placed[b].top; });
    std::vector<int> shift(placed.size(), 0);
    int deepest = 0;
    for (size_t j = 0; j < order.size(); ++j) {
        const Placed& pj = placed[order[j]];
        int s = 0;
        for (size_t i = 0; i < j; ++i) {
            const Placed& pi = placed[order[i]];
            if (pi.bottom <= pj.top)
                s = std::max(s, shift[order[i]] + pi.growth);
        }
        shift[order[j]] = s;
        deepest = std::max(deepest, s + pj.growth);
    }
    for (size_t k = 0; k < placed.size(); ++k) {
        if (shift[k] == 0)
            continue;
        for (size_t i = placed[k].firstItem; i < placed[k].endItem; ++i)
            offset(band.items[i], 0, shift[k]);
        for (size_t i = placed[k].firstSource; i < placed[k].endSource; ++i)
            band.sources[i].box.y += shift[k];
    }
    band.height = designHeight + deepest;
}

std::string BandBuilder::currentText(Control& control) {
    if (control.kind() == ControlKind::TextBox)
        return static_cast<TextBox&>(control).finalText();
    return control.settings().caption;
}

void BandBuilder::refresh(Band& band) {
    for (ItemSource& source : band.sources) {
        Control& control = *source.control;
        if (control.m_revision == source.revision)
            continue;
        source.revision = control.m_revision;
        if (control.kind() == ControlKind::CheckBox) {
            std::get<page::CheckBoxItem>(band.items[source.item]).checked =
                static_cast<CheckBox&>(control).checked();
            continue;
        }
        std::string text = currentText(control);
        if (source.item < 0) {
            if (text.empty())
                continue;
            const ControlDesign& s = control.settings();
            page::TextItem item;
            item.box = source.box;
            item.font = fontOf(control);
            item.align = s.align;
            item.color = s.color;
            item.background = s.background;
            item.control = s.name;
            item.section = control.sectionName();
            item.pageBand = band.pageBand;
            source.item = static_cast<int>(band.items.size());
            band.items.emplace_back(std::move(item));
        }
        auto& item = std::get<page::TextItem>(band.items[source.item]);
        item.font = fontOf(control);
        const TextLayout::Result laid = fillText(item, control, std::move(text), false);
        markCut(band, source.item, item, laid.cut, control.settings().clips);
    }
}

void BandBuilder::itemAtoms(const page::Item& item, std::vector<Atom>& out) {
    if (const auto* t = std::get_if<page::TextItem>(&item)) {
        if (t->runs.empty()) {
            if (t->box.height > 0)
                out.push_back({t->box.y, t->box.y + t->box.height});
            return;
        }
        const page::FontMetrics& m = m_text.metrics(t->font);
        for (const page::TextRun& run : t->runs)
            out.push_back({run.baseline - m.ascent, run.baseline + m.descent});
    } else if (const auto* l = std::get_if<page::LineItem>(&item)) {
        if (l->y1 == l->y2) {
            // A rule is as thick as it is drawn, so a cut passes either above or below it.
            const int above = std::max(1, l->thickness) / 2;
            const int below = std::max(1, l->thickness - above);
            out.push_back({l->y1 - above, l->y1 + below, true});
        } else {
            out.push_back({std::min(l->y1, l->y2), std::max(l->y1, l->y2)});
        }
    } else if (const auto* r = std::get_if<page::RectItem>(&item)) {
        out.push_back({r->box.y, r->box.y + r->box.height});
    } else if (const auto* c = std::get_if<page::CheckBoxItem>(&item)) {
        out.push_back({c->box.y, c->box.y + c->box.height});
    }
}

void BandBuilder::atoms(const Band& band, std::vector<Atom>& out) {
    out.clear();
    for (const page::Item& item : band.items)
        itemAtoms(item, out);
}

void BandBuilder::splitText(page::TextItem& text, int cut, Band& tail) {
    // The lines below the cut go on with the rest of the band.
    const page::FontMetrics& m = m_text.metrics(text.font);
    page::TextItem rest = text;
    rest.runs.clear();
    std::vector<page::TextRun> first;
    for (page::TextRun& run : text.runs) {
        if (run.baseline + m.descent <= cut) {
            first.push_back(std::move(run));
        } else {
            run.baseline -= cut;
            rest.runs.push_back(std::move(run));
        }
    }
    text.runs = std::move(first);
    const int bottom = text.box.y + text.box.height;
    text.box.height = std::max(0, cut - text.box.y);
    text.text = joinRuns(text.runs);
    rest.box.y = 0;
    rest.box.height = std::max(0, bottom - cut);
    rest.text = joinRuns(rest.runs);
    tail.items.emplace_back(std::move(rest));
}

void BandBuilder::split(Band& band, int cut, Band& tail) {
    tail.clear();
    tail.height = band.height - cut;
    // Where each item ends up: >= 0 its index in the head, < 0 -(index + 1) in the tail.
    std::vector<int> moved(band.items.size());
    size_t kept = 0;
    for (size_t i = 0; i < band.items.size(); ++i) {
        page::Item& item = band.items[i];
        m_scratch.clear();
        itemAtoms(item, m_scratch);
        const bool above = std::all_of(m_scratch.begin(), m_scratch.end(),
                                       [cut](const Atom& a) { return a.bottom <= cut; });
        const bool below =
            !m_scratch.empty() && std::all_of(m_scratch.begin(), m_scratch.end(),
                                              [cut](const Atom& a) { return a.top >= cut; });
        auto* text = std::get_if<page::TextItem>(&item);
        if (below) {
            offset(item, 0, -cut);
            moved[i] = -static_cast<int>(tail.items.size()) - 1;
            tail.items.push_back(std::move(item));
            continue;
        }
        if (!above && text != nullptr && text->runs.size() > 1)
            splitText(*text, cut, tail);
        moved[i] = static_cast<int>(kept);
        if (kept != i)
            band.items[kept] = std::move(item);
        ++kept;
    }
    band.items.resize(kept);
    band.height = cut;
    band.sources.clear();

    followItems(band.deferred, tail.deferred, moved);
    followItems(band.cuts, tail.cuts, moved);
}

template <class Note>
void BandBuilder::followItems(std::vector<Note>& head, std::vector<Note>& tail,
                              const std::vector<int>& moved) {
    std::vector<Note> kept;
    for (Note& note : head) {
        const int where = moved[note.item];
        if (where >= 0) {
            note.item = where;
            kept.push_back(std::move(note));
        } else {
            note.item = -where - 1;
            tail.push_back(std::move(note));
        }
    }
    head = std::move(kept);
}

bool BandBuilder::resolve(page::TextItem& item, std::string text, bool wrap) {
    item.text = std::move(text);
    const TextLayout::Result laid = m_text.layout(item.text, item.font, item.box.width, item.align,
                                                  wrap, item.box.height, item.runs);
    for (page::TextRun& run : item.runs) {
        run.x += item.box.x;
        run.baseline += item.box.y;
    }
    return laid.cut;
}

std::string BandBuilder::printedText(const page::TextItem& item) {
    return joinRuns(item.runs);
}

void BandBuilder::setPageBand(page::Item& item, page::PageBand pageBand) {
    if (auto* text = std::get_if<page::TextItem>(&item))
        text->pageBand = pageBand;
    else if (auto* check = std::get_if<page::CheckBoxItem>(&item))
        check->pageBand = pageBand;
}

void BandBuilder::offset(page::Item& item, int dx, int dy) {
    std::visit(
        [dx, dy](auto& i) {
            using T = std::decay_t<decltype(i)>;
            if constexpr (std::is_same_v<T, page::TextItem>) {
                i.box.x += dx;
                i.box.y += dy;
                for (page::TextRun& run : i.runs) {
                    run.x += dx;
                    run.baseline += dy;
                }
            } else if constexpr (std::is_same_v<T, page::LineItem>) {
                i.x1 += dx;
                i.x2 += dx;
                i.y1 += dy;
                i.y2 += dy;
            } else {
                i.box.x += dx;
                i.box.y += dy;
            }
        },
        item);
}

} // namespace qr::engine
