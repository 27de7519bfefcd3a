#pragma once
// The report classes this build has, by class name.

#include "service/report_objects.hpp"

#include <vector>

namespace qr::service {

struct ReportClassEntry {
    const char* className;
    ReportFactory factory;
};

std::vector<ReportClassEntry> builtInReportClasses();

} // namespace qr::service
