#pragma once
// Export filters: a spreadsheet filter and a PDF filter, each created new for one export, given
// the full output path, then handed a finished page collection. Reports export from their end
// handler, so they reach the filters through this interface; the output library provides the
// real filters and the service installs them once at start-up (an explicit call, no static
// self-registration).

#include "platform/engine/page/page.hpp"

#include <functional>
#include <memory>
#include <string>

namespace qr::page {

enum class ExportKind { Spreadsheet, Pdf };

class ExportFilter {
  public:
    virtual ~ExportFilter() = default;
    /// Full path of the file to write.
    virtual void setFileName(const std::string& fileName) = 0;
    /// Write the pages; the file is written whole or not at all. Raises qr::Error on failure.
    virtual void exportPages(const Pages& pages) = 0;
};

using ExportFilterFactory = std::function<std::unique_ptr<ExportFilter>()>;

/// Install the factory for one kind of filter (process-wide; call before reports run).
void installExportFilter(ExportKind kind, ExportFilterFactory factory);
/// A new filter of that kind; raises qr::Error (999) when none is installed.
std::unique_ptr<ExportFilter> createExportFilter(ExportKind kind);

} // namespace qr::page
