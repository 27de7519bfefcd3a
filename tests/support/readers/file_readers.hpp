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
