#pragma once
// Printing without a dialog. The job goes to the default printer unless QUARVEX_PRINTER says
// otherwise:
//   QUARVEX_PRINTER=NAME       the printer of that name
//   QUARVEX_PRINTER=file:PATH  no printer at all: the job is written as a PDF to PATH, exactly
//                              as the PDF export writes it (for headless runs and tests)
// A machine without any printer is an error the user sees; the job never silently turns into
// a file.

#include "platform/engine/page/page.hpp"

#include <cstddef>
#include <string>

class QPrinter;

namespace qr::output {

inline constexpr const char* kPrinterVariable = "QUARVEX_PRINTER";

/// Where a print job goes.
struct PrintDestination {
    enum class Kind { DefaultPrinter, NamedPrinter, PdfFile };
    Kind kind = Kind::DefaultPrinter;
    std::string target; // printer name or file path
};

/// The destination an override value asks for (unset or empty: the default printer). Raises
/// qr::Error for "file:" without a path.
PrintDestination parsePrinterOverride(const char* value);

/// Sets `printer` up for `pages`: Letter paper, the first page's orientation (the report's
/// when there are no pages), the report's margins recorded in the page layout, full-page
/// painting (the items' own coordinates, no printer margins added), one copy, the job named
/// `jobName`.
void setUpPrinter(QPrinter& printer, const page::Pages& pages, const std::string& jobName);

/// Paints pages `first` to `last` (from 0, both included, held within the pages) on `printer`,
/// each page in its own orientation, as one job; the printer is set up already (the print
/// dialog may have changed it). Raises qr::Error (482) naming the printer and the job when the
/// job cannot start, a page is refused or the job fails, and what the renderer raises (the
/// job is then aborted). Nothing is sent without pages.
void printPageRange(QPrinter& printer, const page::Pages& pages, std::size_t first,
                    std::size_t last, const std::string& jobName);

/// Prints all pages on Letter paper in the pages' orientation, full page (the items' own
/// coordinates, no printer margins added), one copy, no dialog, the job named `jobName`.
/// Raises qr::Error (482) when no printer is available, when the printer named by the override
/// does not exist, or when the job fails; a file destination raises what writePdf raises.
/// An empty page collection sends no job.
void printPages(const page::Pages& pages, const std::string& jobName);

} // namespace qr::output
