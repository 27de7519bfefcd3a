#pragma once
// Independent readers of what the component writes, for tests: PDF text through poppler, and
// workbook cells through libfreexl.

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace qr::test {

/// The text of each page of a PDF, as poppler extracts it (physical layout).
std::vector<std::string> pdfPageTexts(const std::filesystem::path& path);
/// All pages' text joined.
std::string pdfText(const std::filesystem::path& path);

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

/// One cell read back from a workbook: a number, a text, or nothing.
using CellValue = std::variant<std::monostate, double, std::string>;

struct Sheet {
    std::string name;
    unsigned rows = 0;
    unsigned short columns = 0;
    std::map<std::pair<unsigned, unsigned short>, CellValue> cells; // (row, column) -> value
};

/// Every worksheet of an .xls file; fails the calling test (ADD_FAILURE) and returns an empty
/// list when libfreexl cannot open it.
std::vector<Sheet> readWorkbook(const std::filesystem::path& path);

/// The numbers and the texts of a sheet, in row order.
std::vector<double> numbersOf(const Sheet& sheet);
std::vector<std::string> textsOf(const Sheet& sheet);

} // namespace qr::test
