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

/// Prints all pages on Letter paper, each page in its own orientation, one copy, no dialog,
/// the job named `jobName`. The pages go to the print system (CUPS) as a PDF, exactly as the PDF
/// export writes them, through a temporary file that is removed once the job is submitted.
/// Raises qr::Error (482) when no printer is available, when the printer named by the override
/// does not exist, or when the job cannot be written or submitted (naming the printer and the
/// job); a file destination raises what writePdf raises. An empty page collection sends no job.
void printPages(const page::Pages& pages, const std::string& jobName);

} // namespace qr::output
