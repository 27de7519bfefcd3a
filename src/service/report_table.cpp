#include "service/report_table.hpp"

namespace qr::service {

std::vector<ReportClassEntry> builtInReportClasses() {
    // Each report is listed here as it is built.
    return {};
}

} // namespace qr::service
