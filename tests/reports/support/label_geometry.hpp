#pragma once
// Checks that a label report lands on its real stock, read back from the PDF it printed: every
// word inside a label's die-cut rectangle (moved by the label offsets), each label holding
// only what its own row prints, sheets filled across, then down, and a second sheet starting
// where the first is full. Any label report can be checked this way (glass labels, metal
// labels): it gives the words each row may print.

#include "reports/common/label_sheet.hpp"
#include "support/readers/pdf_words.hpp"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace qr::test {

/// The words of a label sheet's PDF sorted into the labels they lie in, each label numbered
/// in the order a run fills them (sheet by sheet, across, then down).
struct LabelledWords {
    std::map<int, std::vector<PdfWord>> byLabel;
    /// Words outside every label, or reaching across a label's edge.
    std::vector<PdfWord> strays;
};

/// Sorts `words` into the labels of `sheet`, its labels moved `topOffset` twips down and
/// `leftOffset` twips right.
LabelledWords sortIntoLabels(const std::vector<PdfWord>& words, const reports::LabelSheet& sheet,
                             int topOffset, int leftOffset);

/// What the row printed on one label may show: the words of its texts (a word cut short at
/// the label's edge shows as the start of one of these) and the captions every label carries.
struct LabelRow {
    std::set<std::string> words;
    /// A word the label must show (its glass label, its piece label).
    std::string mark;
};

/// Splits `texts` into the words a label of them may show.
LabelRow labelRow(const std::vector<std::string>& texts, std::string mark);

/// Fails the calling test for every stray word, for every word on label k that neither is a
/// caption nor starts a word of rows[k], for every row whose mark is not on its label, and for
/// a page count other than the sheets the rows fill.
void expectOnTheirLabels(const LabelledWords& printed, const std::vector<LabelRow>& rows,
                         const std::set<std::string>& captions, int pages,
                         const reports::LabelSheet& sheet);

} // namespace qr::test
