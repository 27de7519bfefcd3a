#include "reports/support/label_geometry.hpp"

#include <gtest/gtest.h>
#include <sstream>

namespace qr::test {

namespace {

bool inside(const PdfWord& w, const page::Rect& r) {
    // A tenth of a twip for the PDF's rounding of positions to hundredths of a point.
    constexpr double slack = 0.1;
    return w.left >= r.x - slack && w.right <= r.x + r.width + slack && w.top >= r.y - slack &&
           w.bottom <= r.y + r.height + slack;
}

bool startsAWordOf(const std::string& word, const LabelRow& row) {
    for (const std::string& full : row.words) {
        if (full.compare(0, word.size(), word) == 0)
            return true;
    }
    return false;
}

} // namespace

LabelledWords sortIntoLabels(const std::vector<PdfWord>& words, const reports::LabelSheet& sheet,
                             int topOffset, int leftOffset) {
    LabelledWords sorted;
    for (const PdfWord& word : words) {
        int found = -1;
        for (int row = 0; row < sheet.rows && found < 0; ++row) {
            for (int column = 0; column < sheet.columns && found < 0; ++column) {
                page::Rect r = sheet.label(row, column);
                r.x += leftOffset;
                r.y += topOffset;
                if (inside(word, r))
                    found = word.page * sheet.labelsPerSheet() + row * sheet.columns + column;
            }
        }
        if (found < 0)
            sorted.strays.push_back(word);
        else
            sorted.byLabel[found].push_back(word);
    }
    return sorted;
}

LabelRow labelRow(const std::vector<std::string>& texts, std::string mark) {
    LabelRow row;
    for (const std::string& text : texts) {
        std::istringstream words(text);
        for (std::string word; words >> word;)
            row.words.insert(word);
    }
    row.mark = std::move(mark);
    return row;
}

void expectOnTheirLabels(const LabelledWords& printed, const std::vector<LabelRow>& rows,
                         const std::set<std::string>& captions, int pages,
                         const reports::LabelSheet& sheet) {
    for (const PdfWord& stray : printed.strays)
        ADD_FAILURE() << sheet.stock << ": a word outside every label: " << describe(stray);
    for (const auto& [label, words] : printed.byLabel) {
        const bool hasRow = label < static_cast<int>(rows.size());
        bool markShown = false;
        for (const PdfWord& word : words) {
            if (hasRow && word.text == rows[label].mark)
                markShown = true;
            if (captions.count(word.text) || (hasRow && startsAWordOf(word.text, rows[label])))
                continue;
            ADD_FAILURE() << sheet.stock << ": label " << label << " shows " << describe(word)
                          << ", which is not its row's";
        }
        if (hasRow && !markShown)
            ADD_FAILURE() << sheet.stock << ": label " << label << " lacks its mark "
                          << rows[label].mark;
    }
    for (size_t label = 0; label < rows.size(); ++label) {
        if (!printed.byLabel.count(static_cast<int>(label)))
            ADD_FAILURE() << sheet.stock << ": label " << label << " (" << rows[label].mark
                          << ") is empty";
    }
    const int sheets =
        (static_cast<int>(rows.size()) + sheet.labelsPerSheet() - 1) / sheet.labelsPerSheet();
    EXPECT_EQ(pages, sheets) << sheet.stock << ": " << rows.size() << " labels";
}

} // namespace qr::test
