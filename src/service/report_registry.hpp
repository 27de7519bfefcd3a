#pragma once
// Every report class of the component, one registration each: its class name, how to make it,
// the request name that runs it through PrintReport (if any) and whether that request loads the
// user's label offsets, the typed method of PrintService that runs it (if any), and the files
// it exports. The dispatcher, the report objects, the print service and the command line all
// read this one table; adding a report means filling in its registration and writing its own
// files (see docs/adding-a-report.md).
//
// A class whose factory is empty is known by name but not built yet: a request or typed method
// that reaches it gets the platform's error 429 ("ActiveX component can't create object").

#include "reports/common/print_reports.hpp"
#include "service/report_objects.hpp"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace qr::service {

class PrintService;

/// What a typed method is given besides the service, as the command line (or another host that
/// speaks JSON) passes it: the report data as JSON, keyed by the host's member names, and the
/// method's optional arguments.
struct TypedCallArguments {
    std::string dataJson;
    std::string vendorPath;
    std::optional<bool> preview; ///< unset: the method's own default
    bool excel = false;
    bool pdf = false;
    std::string reportFormat;
};

/// Runs one typed method of `service` with `arguments`; raises qr::Error when the report data
/// cannot be read (the method itself traps its failures and shows them).
using TypedCall = void (*)(PrintService& service, const TypedCallArguments& arguments);

/// A typed print method of PrintService.
struct TypedMethod {
    const char* name;
    const char* parameters; ///< as the host's interface declares them
    bool needsData;         ///< the report data must be given
    TypedCall call;
    /// A small, valid data document for the method (`call METHOD --example`); nullptr for none.
    std::string (*example)() = nullptr;
};

struct ReportRegistration {
    const char* className;
    /// Makes a fresh report object; empty for a class not built yet.
    ReportFactory factory;
    /// The request name (lower case) that runs it through PrintReport; nullptr for none.
    const char* requestName = nullptr;
    /// Whether that request sets the label offsets from the user's settings first.
    bool loadsLabelOffsets = false;
    /// The typed method that runs it; none for request-only reports and sub-reports.
    std::optional<TypedMethod> method;
    /// Export file suffixes; both nullptr for a report that exports nothing.
    reports::ExportSuffixes exports{nullptr, nullptr};
};

/// Every registration, in the order the component documents them.
std::span<const ReportRegistration> reportRegistry();

/// The registration of a class name (exact), a request name (exact, lower case) or a typed
/// method name (exact); nullptr when there is none.
const ReportRegistration* registrationOfClass(std::string_view className);
const ReportRegistration* registrationOfRequest(std::string_view requestName);
const ReportRegistration* registrationOfMethod(std::string_view methodName);

} // namespace qr::service
