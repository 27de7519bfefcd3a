#pragma once
// The ".xls" export: a real Excel 97-2003 (BIFF8) workbook. The OLE2 compound file comes from
// libgsf; the "Workbook" stream inside it is written here. The pages are laid out as a cell
// grid (cell_grid.hpp): numbers become numeric cells with the Excel form of their output
// format, texts go through the shared-string table, and each report is one worksheet that
// continues on further sheets past 65,536 rows.

#include "platform/engine/page/export_filter.hpp"
#include "platform/engine/page/page.hpp"
#include "platform/output/cell_grid.hpp"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace qr::output {

inline constexpr const char* kWorkbookSource = "WorkbookExport";
/// Rows one worksheet holds.
inline constexpr std::uint32_t kMaxSheetRows = 65536;

/// Writes `pages` to `path` as an Excel 97-2003 workbook. The sheet is named `sheetName`, or
/// the pages' title when that is empty, made fit for Excel (excelSheetName). The file is
/// written whole or not at all: a temporary file in the target folder is renamed onto the
/// target only when complete, and an existing file is left untouched on failure. Raises
/// qr::Error (75, kWorkbookSource) naming the path and the cause.
void writeWorkbook(const page::Pages& pages, const std::filesystem::path& path,
                   const std::string& sheetName = {});

/// The same for a grid already built; rows past kMaxSheetRows continue on sheets named
/// "<name> (2)", "<name> (3)", ...
void writeWorkbook(const CellGrid& grid, const std::filesystem::path& path,
                   const std::string& sheetName);

/// The "Workbook" stream writeWorkbook stores for `grid`, handed to `sink` piece by piece in
/// order, without a file or container.
void writeWorkbookStream(const CellGrid& grid, const std::string& sheetName,
                         const std::function<void(std::span<const std::uint8_t>)>& sink);

/// A worksheet name Excel accepts, made from a report title: the characters : \ / ? * [ ]
/// become "_", control characters are dropped, leading and trailing blanks and apostrophes are
/// trimmed, the result is cut to 31 characters (`maxLength`), and an empty result (or the
/// reserved name "History") gives "Sheet1" (or "History_").
std::string excelSheetName(std::string_view title, std::size_t maxLength = 31);

/// The engine's spreadsheet export filter, writing through writeWorkbook.
std::unique_ptr<page::ExportFilter> makeWorkbookExportFilter();

} // namespace qr::output
