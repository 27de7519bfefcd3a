#pragma once
// Report objects: one shared instance per report class and thread, created on first use from
// the report registry (report_registry.cpp lists every report class), kept with its members and
// pages until released; tests may add classes of their own.

#include "platform/core/error.hpp"
#include "platform/engine/report.hpp"

#include <functional>
#include <memory>
#include <string>

namespace qr::service {

using ReportFactory = std::function<std::unique_ptr<engine::Report>()>;

/// Adds (or replaces) a report class in the process-wide table.
void addReportClass(const std::string& className, ReportFactory factory);
/// Whether the table has the class.
bool hasReportClass(const std::string& className);

/// This thread's instance of the class, created on first use. A class this build does not have
/// raises the platform's error 429 ("ActiveX component can't create object").
engine::Report& reportObject(const std::string& className);

/// The instance of the class as its concrete type; raises Error 13 when it is not one.
template <class R> R& reportObjectAs(const std::string& className) {
    auto* report = dynamic_cast<R*>(&reportObject(className));
    if (!report)
        throw Error::typeMismatch("QuarvexReports.PrintService");
    return *report;
}

/// Discards this thread's instance; the next use creates a fresh one.
void releaseReportObject(const std::string& className);

} // namespace qr::service
