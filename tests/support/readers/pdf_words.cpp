#include "support/readers/pdf_words.hpp"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <poppler-document.h>
#include <poppler-page.h>
#include <sstream>

namespace qr::test {

std::vector<PdfWord> pdfWords(const std::filesystem::path& path) {
    std::unique_ptr<poppler::document> doc(poppler::document::load_from_file(path.string()));
    if (!doc) {
        ADD_FAILURE() << "poppler cannot open " << path;
        return {};
    }
    constexpr double kTwipsPerPoint = 20.0;
    std::vector<PdfWord> words;
    for (int i = 0; i < doc->pages(); ++i) {
        std::unique_ptr<poppler::page> page(doc->create_page(i));
        for (const poppler::text_box& box : page->text_list()) {
            const auto bytes = box.text().to_utf8();
            const poppler::rectf r = box.bbox();
            words.push_back({i, std::string(bytes.begin(), bytes.end()), r.left() * kTwipsPerPoint,
                             r.top() * kTwipsPerPoint, r.right() * kTwipsPerPoint,
                             r.bottom() * kTwipsPerPoint});
        }
    }
    return words;
}

std::string describe(const PdfWord& w) {
    std::ostringstream out;
    out << "'" << w.text << "' on page " << w.page + 1 << " at (" << w.left << ", " << w.top
        << ")-(" << w.right << ", " << w.bottom << ") twips";
    return out.str();
}

void expectWordsMovedBy(const std::vector<PdfWord>& original, const std::vector<PdfWord>& moved,
                        int down, int right) {
    ASSERT_EQ(original.size(), moved.size());
    // Poppler's reading order may change when the page moves, so each word is looked for among
    // the moved words of the same text on the same page.
    std::multimap<std::pair<int, std::string>, const PdfWord*> candidates;
    for (const PdfWord& w : moved)
        candidates.emplace(std::pair{w.page, w.text}, &w);
    constexpr double tolerance = 0.1;
    for (const PdfWord& a : original) {
        auto [first, last] = candidates.equal_range({a.page, a.text});
        auto match = std::find_if(first, last, [&](const auto& entry) {
            const PdfWord& b = *entry.second;
            return std::abs(b.left - a.left - right) <= tolerance &&
                   std::abs(b.right - a.right - right) <= tolerance &&
                   std::abs(b.top - a.top - down) <= tolerance &&
                   std::abs(b.bottom - a.bottom - down) <= tolerance;
        });
        if (match == last) {
            ADD_FAILURE() << describe(a) << " has no counterpart " << down << " twips down and "
                          << right << " twips right";
            continue;
        }
        candidates.erase(match);
    }
}

} // namespace qr::test
