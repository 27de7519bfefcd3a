#pragma once
// The real export filters, wrapped so that a test sees which files a report wrote, in order.

#include "platform/engine/page/export_filter.hpp"
#include "platform/output/pdf_writer.hpp"
#include "platform/output/workbook.hpp"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace qr::test {

/// The real export filters, noting each file they wrote, in order.
struct ExportJournal {
    ExportJournal() {
        note(page::ExportKind::Spreadsheet, &output::makeWorkbookExportFilter);
        note(page::ExportKind::Pdf, &output::makePdfExportFilter);
    }
    ~ExportJournal() {
        page::installExportFilter(page::ExportKind::Spreadsheet, &output::makeWorkbookExportFilter);
        page::installExportFilter(page::ExportKind::Pdf, &output::makePdfExportFilter);
    }
    struct Noting : page::ExportFilter {
        std::unique_ptr<page::ExportFilter> real;
        std::vector<std::string>* written = nullptr;
        std::string file;
        void setFileName(const std::string& name) override { real->setFileName(file = name); }
        void exportPages(const page::Pages& pages) override {
            real->exportPages(pages);
            written->push_back(std::filesystem::path(file).filename().string());
        }
    };
    void note(page::ExportKind kind, std::unique_ptr<page::ExportFilter> (*real)()) {
        page::installExportFilter(kind, [this, real] {
            auto filter = std::make_unique<Noting>();
            filter->real = real();
            filter->written = &written;
            return filter;
        });
    }
    std::vector<std::string> written;
};

} // namespace qr::test
