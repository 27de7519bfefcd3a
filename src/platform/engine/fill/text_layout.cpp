#include "platform/engine/fill/text_layout.hpp"

#include <algorithm>

namespace qr::engine {

namespace {

bool isContinuationByte(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// Offsets where UTF-8 characters end, in order.
std::vector<size_t> characterEnds(std::string_view text) {
    std::vector<size_t> ends;
    for (size_t i = 1; i <= text.size(); ++i) {
        if (i == text.size() || !isContinuationByte(text[i]))
            ends.push_back(i);
    }
    return ends;
}

size_t skipSpaces(std::string_view text, size_t pos) {
    while (pos < text.size() && text[pos] == ' ')
        ++pos;
    return pos;
}

size_t nextSpace(std::string_view text, size_t pos) {
    const size_t found = text.find(' ', pos);
    return found == std::string_view::npos ? text.size() : found;
}

} // namespace

TextLayout::TextLayout(page::TextMeasurer& measurer, page::Pages& pages)
    : m_measurer(measurer), m_pages(pages) {}

int TextLayout::fontIndex(const page::FontSpec& font) {
    return m_pages.fontIndex(font);
}

const page::FontMetrics& TextLayout::metrics(int font) {
    while (static_cast<int>(m_metrics.size()) <= font)
        m_metrics.push_back(m_measurer.metrics(m_pages.fonts[m_metrics.size()]));
    return m_metrics[font];
}

int TextLayout::width(int font, std::string_view text) {
    if (text.empty())
        return 0;
    if (m_widths.full())
        m_widths.clear();
    const auto [index, added] = m_widths.findOrAdd(static_cast<std::uint32_t>(font), text);
    if (!added && index != BytesMemo<int>::kNone)
        return m_widths[index];
    const int w = m_measurer.width(m_pages.fonts[font], text);
    ++m_measured;
    if (added)
        m_widths[index] = w;
    return w;
}

TextLayout::Result TextLayout::layout(std::string_view text, int font, int boxWidth,
                                      page::Align align, bool wrap, int maxHeight,
                                      std::vector<page::TextRun>& runs) {
    runs.clear();
    m_lines.clear();
    m_kept = {};
    Result result;
    size_t start = 0;
    size_t i = 0;
    while (true) {
        if (i < text.size() && text[i] != '\r' && text[i] != '\n') {
            ++i;
            continue;
        }
        if (!addLine(text.substr(start, i - start), font, boxWidth, align, wrap, m_lines))
            result.cut = true;
        if (i >= text.size())
            break;
        i += (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ? 2 : 1;
        start = i;
    }

    const page::FontMetrics& m = metrics(font);
    const int count = static_cast<int>(m_lines.size());
    for (int line = 0; line < count; ++line) {
        const int baseline = m.ascent + line * m.lineHeight;
        if (line > 0 && baseline + m.descent > maxHeight) {
            // Blank lines left out lose nothing.
            result.cut = result.cut || std::any_of(m_lines.begin() + line, m_lines.end(),
                                                   [](std::string_view l) { return !l.empty(); });
            break;
        }
        const std::string_view piece = m_lines[line];
        if (piece.empty())
            continue;
        const int w = piece.data() == m_kept.line.data() && piece.size() == m_kept.line.size()
                          ? m_kept.width
                          : width(font, piece);
        int x = 0;
        if (align == page::Align::Right)
            x = boxWidth - w;
        if (align == page::Align::Center)
            x = (boxWidth - w) / 2;
        runs.push_back(page::TextRun{x, baseline, w, std::string(piece)});
    }
    result.height = count == 0 ? 0 : m.ascent + m.descent + (count - 1) * m.lineHeight;
    return result;
}

bool TextLayout::addLine(std::string_view line, int font, int boxWidth, page::Align align,
                         bool wrap, std::vector<std::string_view>& lines) {
    if (line.empty()) {
        lines.push_back(line);
        return true;
    }
    if (const int w = width(font, line); w <= boxWidth) {
        lines.push_back(line);
        m_kept = {line, w};
    } else if (wrap) {
        wrapParagraph(line, font, boxWidth, lines);
    } else {
        const std::string_view kept = align == page::Align::Right ? fitSuffix(line, font, boxWidth)
                                                                  : fitPrefix(line, font, boxWidth);
        lines.push_back(kept);
        // Blanks that hang over the box lose nothing.
        const std::string_view lost = align == page::Align::Right
                                          ? line.substr(0, line.size() - kept.size())
                                          : line.substr(kept.size());
        return lost.find_first_not_of(' ') == std::string_view::npos;
    }
    return true;
}

void TextLayout::wrapParagraph(std::string_view p, int font, int boxWidth,
                               std::vector<std::string_view>& lines) {
    const int spaceWidth = width(font, " ");
    std::vector<size_t> wordEnds;
    size_t pos = 0;
    while (pos < p.size()) {
        const std::string_view rest = p.substr(pos);
        if (width(font, rest) <= boxWidth) {
            lines.push_back(rest);
            return;
        }
        // Words are measured one by one (their widths recur and stay cached); the line they
        // make is measured once to confirm, stepping back a word while it is too wide.
        wordEnds.clear();
        int estimate = 0;
        size_t i = pos;
        while (i < p.size()) {
            const size_t end = nextSpace(p, i);
            const int gap =
                wordEnds.empty() ? 0 : static_cast<int>(i - wordEnds.back()) * spaceWidth;
            const int add = gap + width(font, p.substr(i, end - i));
            if (estimate + add > boxWidth)
                break;
            estimate += add;
            wordEnds.push_back(end);
            i = skipSpaces(p, end);
        }
        while (!wordEnds.empty() && width(font, p.substr(pos, wordEnds.back() - pos)) > boxWidth)
            wordEnds.pop_back();
        if (wordEnds.empty()) {
            // The first word alone is wider than the box: break inside it.
            const size_t end = nextSpace(p, pos);
            std::string_view piece = fitPrefix(p.substr(pos, end - pos), font, boxWidth);
            if (piece.empty())
                piece = p.substr(pos, characterEnds(p.substr(pos))[0]);
            lines.push_back(piece);
            pos += piece.size();
            continue;
        }
        lines.push_back(p.substr(pos, wordEnds.back() - pos));
        pos = skipSpaces(p, wordEnds.back());
    }
}

std::string_view TextLayout::fitPrefix(std::string_view text, int font, int boxWidth) {
    const std::vector<size_t> ends = characterEnds(text);
    // Largest number of characters whose prefix fits, by bisection.
    size_t lo = 0, hi = ends.size();
    while (lo < hi) {
        const size_t mid = (lo + hi + 1) / 2;
        if (width(font, text.substr(0, ends[mid - 1])) <= boxWidth)
            lo = mid;
        else
            hi = mid - 1;
    }
    return lo == 0 ? std::string_view() : text.substr(0, ends[lo - 1]);
}

std::string_view TextLayout::fitSuffix(std::string_view text, int font, int boxWidth) {
    const std::vector<size_t> ends = characterEnds(text);
    // Starts of characters: 0 and every end but the last.
    std::vector<size_t> starts{0};
    starts.insert(starts.end(), ends.begin(), ends.end() - 1);
    // Smallest start whose suffix fits.
    size_t lo = 0, hi = starts.size();
    while (lo < hi) {
        const size_t mid = (lo + hi) / 2;
        if (width(font, text.substr(starts[mid])) <= boxWidth)
            hi = mid;
        else
            lo = mid + 1;
    }
    return lo == starts.size() ? std::string_view() : text.substr(starts[lo]);
}

} // namespace qr::engine
