#pragma once
// Reading back what the final glass reports wrote, with readers independent of the writers:
// PDF text through poppler, workbook cells through libfreexl.

#include <filesystem>
#include <freexl.h>
#include <memory>
#include <poppler-document.h>
#include <poppler-page.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace qr::test {

/// The text of every page of a PDF, pages joined by a form feed; throws when unreadable.
inline std::string glassPdfText(const std::filesystem::path& path) {
    std::unique_ptr<poppler::document> doc(poppler::document::load_from_file(path.string()));
    if (!doc)
        throw std::runtime_error("poppler cannot read " + path.string());
    std::string text;
    for (int i = 0; i < doc->pages(); ++i) {
        std::unique_ptr<poppler::page> page(doc->create_page(i));
        if (!page)
            continue;
        const auto bytes = page->text().to_utf8();
        if (i > 0)
            text += '\f';
        text.append(bytes.begin(), bytes.end());
    }
    return text;
}

/// Number of pages of a PDF.
inline int glassPdfPages(const std::filesystem::path& path) {
    std::unique_ptr<poppler::document> doc(poppler::document::load_from_file(path.string()));
    return doc ? doc->pages() : -1;
}

/// One workbook cell as libfreexl reads it: numbers as "=value", texts as they are.
struct GlassCell {
    unsigned row = 0;
    unsigned short column = 0;
    std::string shown;
};

/// Every non-empty cell of the first sheet, row by row; throws when the file cannot be read.
inline std::vector<GlassCell> glassWorkbookCells(const std::filesystem::path& path) {
    const void* handle = nullptr;
    const int rc = freexl_open(path.c_str(), &handle);
    // libfreexl can report success without a handle on a malformed string table.
    if (rc != FREEXL_OK || handle == nullptr)
        throw std::runtime_error("freexl cannot read " + path.string());
    std::vector<GlassCell> cells;
    unsigned rows = 0;
    unsigned short columns = 0;
    if (freexl_select_active_worksheet(handle, 0) == FREEXL_OK &&
        freexl_worksheet_dimensions(handle, &rows, &columns) == FREEXL_OK) {
        for (unsigned r = 0; r < rows; ++r) {
            for (unsigned short c = 0; c < columns; ++c) {
                FreeXL_CellValue value{};
                if (freexl_get_cell_value(handle, r, c, &value) != FREEXL_OK)
                    continue;
                std::ostringstream shown;
                switch (value.type) {
                case FREEXL_CELL_INT:
                    shown << '=' << value.value.int_value;
                    break;
                case FREEXL_CELL_DOUBLE:
                    shown << '=' << value.value.double_value;
                    break;
                case FREEXL_CELL_TEXT:
                case FREEXL_CELL_SST_TEXT:
                    shown << value.value.text_value;
                    break;
                default:
                    continue;
                }
                cells.push_back({r, c, shown.str()});
            }
        }
    }
    freexl_close(handle);
    return cells;
}

/// The cell showing `shown`, or nullptr.
inline const GlassCell* findGlassCell(const std::vector<GlassCell>& cells,
                                      const std::string& shown) {
    for (const GlassCell& cell : cells) {
        if (cell.shown == shown)
            return &cell;
    }
    return nullptr;
}

} // namespace qr::test
