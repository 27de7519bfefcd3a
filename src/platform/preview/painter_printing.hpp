#pragma once
// Printing through Qt's printer, for the preview's print button: the print dialog sets up a
// QPrinter, and the chosen pages are painted on it with the same renderer as the preview.

#include "platform/engine/page/page.hpp"

#include <cstddef>
#include <string>

class QPrinter;

namespace qr::output {

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

} // namespace qr::output
