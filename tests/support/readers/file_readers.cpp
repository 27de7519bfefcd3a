#include "support/readers/file_readers.hpp"

#include <freexl.h>
#include <gtest/gtest.h>
#include <poppler-document.h>
#include <poppler-page.h>

#include <memory>

namespace qr::test {

std::vector<std::string> pdfPageTexts(const std::filesystem::path& path) {
    std::unique_ptr<poppler::document> doc(poppler::document::load_from_file(path.string()));
    if (!doc) {
        ADD_FAILURE() << "poppler cannot open " << path;
        return {};
    }
    std::vector<std::string> pages;
    for (int i = 0; i < doc->pages(); ++i) {
        std::unique_ptr<poppler::page> page(doc->create_page(i));
        auto bytes = page->text(poppler::rectf(), poppler::page::physical_layout).to_utf8();
        pages.emplace_back(bytes.begin(), bytes.end());
    }
    return pages;
}

std::string pdfText(const std::filesystem::path& path) {
    std::string all;
    for (const auto& page : pdfPageTexts(path))
        all += page;
    return all;
}

std::vector<Sheet> readWorkbook(const std::filesystem::path& path) {
    const void* handle = nullptr;
    if (freexl_open(path.c_str(), &handle) != FREEXL_OK || handle == nullptr) {
        ADD_FAILURE() << "libfreexl cannot open " << path;
        if (handle) freexl_close(handle);
        return {};
    }
    std::vector<Sheet> sheets;
    unsigned count = 0;
    freexl_get_info(handle, FREEXL_BIFF_SHEET_COUNT, &count);
    for (unsigned s = 0; s < count; ++s) {
        Sheet sheet;
        const char* name = nullptr;
        if (freexl_get_worksheet_name(handle, static_cast<unsigned short>(s), &name) == FREEXL_OK &&
            name)
            sheet.name = name;
        freexl_select_active_worksheet(handle, static_cast<unsigned short>(s));
        freexl_worksheet_dimensions(handle, &sheet.rows, &sheet.columns);
        for (unsigned r = 0; r < sheet.rows; ++r) {
            for (unsigned short c = 0; c < sheet.columns; ++c) {
                FreeXL_CellValue cell;
                if (freexl_get_cell_value(handle, r, c, &cell) != FREEXL_OK) continue;
                switch (cell.type) {
                case FREEXL_CELL_INT:
                    sheet.cells[{r, c}] = static_cast<double>(cell.value.int_value);
                    break;
                case FREEXL_CELL_DOUBLE:
                    sheet.cells[{r, c}] = cell.value.double_value;
                    break;
                case FREEXL_CELL_TEXT:
                case FREEXL_CELL_SST_TEXT:
                    sheet.cells[{r, c}] = std::string(cell.value.text_value);
                    break;
                default:
                    break;
                }
            }
        }
        sheets.push_back(std::move(sheet));
    }
    freexl_close(handle);
    return sheets;
}

std::vector<double> numbersOf(const Sheet& sheet) {
    std::vector<double> numbers;
    for (const auto& [at, value] : sheet.cells) {
        if (const double* d = std::get_if<double>(&value)) numbers.push_back(*d);
    }
    return numbers;
}

std::vector<std::string> textsOf(const Sheet& sheet) {
    std::vector<std::string> texts;
    for (const auto& [at, value] : sheet.cells) {
        if (const auto* t = std::get_if<std::string>(&value)) texts.push_back(*t);
    }
    return texts;
}

} // namespace qr::test
