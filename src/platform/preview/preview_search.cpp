#include "platform/preview/preview_search.hpp"

#include <algorithm>

namespace qr::output {

std::vector<TextMatch> TextFinder::find(const page::Pages& pages, const std::string& needle) {
    std::vector<TextMatch> matches;
    const QString wanted = QString::fromStdString(repairUtf8(needle));
    if (wanted.trimmed().isEmpty())
        return matches;
    // One scratch item for all pages: decoding into it reuses its strings and runs.
    page::Item item;
    for (std::size_t p = 0; p < pages.pages.size(); ++p) {
        const page::ItemList& items = pages.pages[p].items;
        for (std::size_t i = 0; i < items.size(); ++i) {
            items.decodeInto(i, item);
            if (const auto* text = std::get_if<page::TextItem>(&item))
                findInItem(*text, p, wanted, pages.fonts, matches);
        }
    }
    return matches;
}

void TextFinder::findInItem(const page::TextItem& item, std::size_t pageIndex,
                            const QString& needle, const std::vector<page::FontSpec>& fonts,
                            std::vector<TextMatch>& out) {
    if (item.runs.empty() || item.font < 0 || std::size_t(item.font) >= fonts.size())
        return;
    ScaledFont* font = nullptr;
    for (const auto& run : item.runs) {
        // Drawing reads bytes that are not UTF-8 as Latin-1; searching reads them the same way.
        const QString line = QString::fromStdString(repairUtf8(run.text));
        qsizetype at = line.indexOf(needle, 0, Qt::CaseInsensitive);
        if (at < 0)
            continue;
        if (!font)
            font = &m_fonts.get(fonts[std::size_t(item.font)]);
        const auto& metrics = font->metrics();
        while (at >= 0) {
            TextMatch match;
            match.page = pageIndex;
            match.x = run.x + font->advance(line.left(at).toStdString());
            match.width = font->advance(line.mid(at, needle.size()).toStdString());
            match.y = run.baseline - metrics.ascent;
            match.height = metrics.ascent + metrics.descent;
            out.push_back(match);
            at = line.indexOf(needle, at + needle.size(), Qt::CaseInsensitive);
        }
    }
}

int stepMatch(const std::vector<TextMatch>& matches, int current, bool forwards,
              std::size_t fromPage) {
    const int count = int(matches.size());
    if (count == 0)
        return -1;
    if (current >= 0 && current < count)
        return forwards ? (current + 1) % count : (current + count - 1) % count;
    if (forwards) {
        auto it = std::find_if(matches.begin(), matches.end(),
                               [&](const TextMatch& m) { return m.page >= fromPage; });
        return it == matches.end() ? 0 : int(it - matches.begin());
    }
    auto it = std::find_if(matches.rbegin(), matches.rend(),
                           [&](const TextMatch& m) { return m.page <= fromPage; });
    return it == matches.rend() ? count - 1 : int(matches.rend() - it) - 1;
}

} // namespace qr::output
