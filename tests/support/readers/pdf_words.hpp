#pragma once
// The words of a PDF with their boxes, read back through poppler, for tests that check where
// text landed on the paper (label sheets, calibration sheets).

#include <filesystem>
#include <string>
#include <vector>

namespace qr::test {

/// One word of a PDF as poppler finds it: the page (from 0), the text, and the word's box in
/// twips from the page's top-left corner (poppler's box: the glyphs' advance across, the font's
/// ascent and descent up and down).
struct PdfWord {
    int page = 0;
    std::string text;
    double left = 0, top = 0, right = 0, bottom = 0;
};

/// Every word of every page, in poppler's reading order; fails the calling test
/// (ADD_FAILURE) and returns none when poppler cannot open the file.
std::vector<PdfWord> pdfWords(const std::filesystem::path& path);

/// "'text' on page n at (left, top)-(right, bottom) twips", for messages.
std::string describe(const PdfWord& word);

/// Fails the calling test unless `moved` holds the same words as `original`, each on the same
/// page `down` twips lower and `right` twips further right (within a tenth of a twip).
void expectWordsMovedBy(const std::vector<PdfWord>& original, const std::vector<PdfWord>& moved,
                        int down, int right);

} // namespace qr::test
