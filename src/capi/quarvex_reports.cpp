// The C entry points. Each one checks its service and thread, makes the service's host the
// active one for the call, and turns whatever happens into a status and the service's last
// error: no exception leaves this file.

#include "quarvex_reports.h"

#include "capi/capi_host.hpp"
#include "platform/core/error.hpp"
#include "platform/db/connection.hpp"
#include "platform/host/module_state.hpp"
#include "service/bid_package.hpp"
#include "service/print_service.hpp"
#include "service/report_registry.hpp"

#include <exception>
#include <string>
#include <thread>
#include <vector>

static_assert(sizeof(quarvex_bool) == 2, "quarvex_bool is the host's 16-bit Boolean");

struct quarvex_service {
    std::thread::id thread = std::this_thread::get_id();
    std::shared_ptr<qr::capi::CapiHost> host = std::make_shared<qr::capi::CapiHost>();
    qr::service::PrintService service;
    std::string lastError;
    int lastErrorNumber = 0;
};

namespace {

using namespace qr;

/// Records a failure as the service's last error and returns `status`.
quarvex_status fail(quarvex_service* s, quarvex_status status, std::string text, int number = 0) {
    s->lastError = std::move(text);
    s->lastErrorNumber = number;
    return status;
}

/// Runs one entry point's work for service `s`. `work` returns a status and may raise; an
/// error it raises becomes `onError` (or QUARVEX_E_FAILED), and a call that ran but showed the
/// user an error becomes QUARVEX_SHOWN_ERROR.
template <class Work>
quarvex_status guarded(quarvex_service* s, quarvex_status onError, Work&& work) noexcept {
    if (!s) return QUARVEX_E_INVALID_ARGUMENT;
    // Another thread's call must not touch the service at all, its last error included.
    if (s->thread != std::this_thread::get_id()) return QUARVEX_E_WRONG_THREAD;
    try {
        s->lastError.clear();
        s->lastErrorNumber = 0;
        capi::ActiveHost active(s->host);
        s->service.setContainer(s->host);
        s->host->resetShown();
        const quarvex_status status = work();
        if (status == QUARVEX_OK && s->host->shownCount() > 0)
            return fail(s, QUARVEX_SHOWN_ERROR, s->host->lastShown());
        return status;
    } catch (const Error& e) {
        try {
            return fail(s, onError, e.description(), e.number());
        } catch (...) {
        }
    } catch (const std::exception& e) {
        try {
            return fail(s, QUARVEX_E_FAILED, e.what());
        } catch (...) {
        }
    } catch (...) {
        try {
            return fail(s, QUARVEX_E_FAILED, "Unknown error");
        } catch (...) {
        }
    }
    return QUARVEX_E_FAILED;
}

host::ConnectionRef openConnection(const char* connectionString) {
    if (!connectionString || !*connectionString) return nullptr;
    return std::make_shared<db::Connection>(connectionString);
}

/// The typed methods, in the registry's order.
const std::vector<const char*>& methodNames() {
    static const std::vector<const char*> names = [] {
        std::vector<const char*> found;
        for (const auto& entry : service::reportRegistry())
            if (entry.method) found.push_back(entry.method->name);
        return found;
    }();
    return names;
}

} // namespace

extern "C" {

QUARVEX_API const char* quarvex_version(void) { return QR_VERSION; }

QUARVEX_API quarvex_status quarvex_service_create(quarvex_service** out) {
    if (!out) return QUARVEX_E_INVALID_ARGUMENT;
    *out = nullptr;
    try {
        *out = new quarvex_service;
        return QUARVEX_OK;
    } catch (...) {
        return QUARVEX_E_FAILED;
    }
}

QUARVEX_API quarvex_status quarvex_service_free(quarvex_service* service) {
    if (!service) return QUARVEX_OK;
    if (service->thread != std::this_thread::get_id()) return QUARVEX_E_WRONG_THREAD;
    try {
        // Error dialogs on this thread no longer go through the freed service's callbacks.
        auto& state = qr::host::moduleState();
        if (state.sharedContainer == service->host) state.sharedContainer.reset();
        delete service;
        return QUARVEX_OK;
    } catch (...) {
        return QUARVEX_E_FAILED;
    }
}

QUARVEX_API quarvex_status quarvex_set_vendor_connection(quarvex_service* service,
                                                         const char* connection_string) {
    return guarded(service, QUARVEX_E_CONNECTION, [&] {
        service->service.setVendorConnection(openConnection(connection_string));
        return QUARVEX_OK;
    });
}

QUARVEX_API quarvex_status quarvex_set_master_connection(quarvex_service* service,
                                                         const char* connection_string) {
    return guarded(service, QUARVEX_E_CONNECTION, [&] {
        qr::host::ConnectionRef connection = openConnection(connection_string);
        service->service.setMasterConnection(connection);
        // The built-in usage log writes to the master database, as the command line's does.
        service->host->setLogConnection(connection);
        return QUARVEX_OK;
    });
}

QUARVEX_API quarvex_status quarvex_set_error_dialog(quarvex_service* service,
                                                    quarvex_error_dialog_fn fn, void* user_data) {
    return guarded(service, QUARVEX_E_FAILED, [&] {
        service->host->callbacks.errorDialog = fn;
        service->host->callbacks.errorDialogData = user_data;
        return QUARVEX_OK;
    });
}

QUARVEX_API quarvex_status quarvex_set_message_box(quarvex_service* service,
                                                   quarvex_message_box_fn fn, void* user_data) {
    return guarded(service, QUARVEX_E_FAILED, [&] {
        service->host->callbacks.messageBox = fn;
        service->host->callbacks.messageBoxData = user_data;
        return QUARVEX_OK;
    });
}

QUARVEX_API quarvex_status quarvex_set_usage_log(quarvex_service* service,
                                                 quarvex_usage_log_fn fn, void* user_data) {
    return guarded(service, QUARVEX_E_FAILED, [&] {
        service->host->callbacks.usageLog = fn;
        service->host->callbacks.usageLogData = user_data;
        return QUARVEX_OK;
    });
}

QUARVEX_API quarvex_status quarvex_print_report(quarvex_service* service, const char* request) {
    return guarded(service, QUARVEX_E_FAILED, [&] {
        if (!request) return fail(service, QUARVEX_E_INVALID_ARGUMENT, "No request string given");
        std::string args = request;
        try {
            service->service.PrintReport(args);
        } catch (const qr::Error& e) {
            if (e.number() != qr::errc::kComponent) throw;
            return fail(service, QUARVEX_E_NOT_CONNECTED, e.description(), e.number());
        }
        return QUARVEX_OK;
    });
}

QUARVEX_API quarvex_status quarvex_call_method(quarvex_service* service, const char* method,
                                               const char* data_json, const char* vendor_path,
                                               quarvex_bool preview, quarvex_bool export_excel,
                                               quarvex_bool export_pdf,
                                               const char* report_format) {
    return guarded(service, QUARVEX_E_FAILED, [&] {
        if (!method) return fail(service, QUARVEX_E_INVALID_ARGUMENT, "No method name given");
        const qr::service::ReportRegistration* entry = qr::service::registrationOfMethod(method);
        if (!entry || !entry->method)
            return fail(service, QUARVEX_E_UNKNOWN_METHOD,
                        std::string("No typed print method named '") + method + "'");
        if (entry->method->needsData && !data_json)
            return fail(service, QUARVEX_E_INVALID_ARGUMENT,
                        std::string(method) + " needs its report data as JSON");
        qr::service::TypedCallArguments arguments;
        arguments.dataJson = data_json ? data_json : "";
        arguments.vendorPath = vendor_path ? vendor_path : "";
        arguments.preview = preview != 0;
        arguments.excel = export_excel != 0;
        arguments.pdf = export_pdf != 0;
        arguments.reportFormat = report_format ? report_format : "";
        entry->method->call(service->service, arguments);
        return QUARVEX_OK;
    });
}

QUARVEX_API quarvex_status quarvex_print_bid_package(quarvex_service* service, int job_id,
                                                     int user_id, const char* output_file,
                                                     const char* const* report_names,
                                                     size_t report_count) {
    return guarded(service, QUARVEX_E_FAILED, [&] {
        if (!output_file || !*output_file)
            return fail(service, QUARVEX_E_INVALID_ARGUMENT, "No output file given");
        if (!service->service.VendorConnection() || !service->service.MasterConnection())
            return fail(service, QUARVEX_E_NOT_CONNECTED,
                        "Cannot print a bid package without setting the vendor and master "
                        "connections first",
                        qr::errc::kComponent);
        qr::service::BidPackageRequest request;
        request.jobId = job_id;
        request.userId = user_id;
        request.output = std::u8string(reinterpret_cast<const char8_t*>(output_file));
        for (size_t i = 0; i < report_count && report_names; ++i) {
            if (!report_names[i])
                return fail(service, QUARVEX_E_INVALID_ARGUMENT, "A report name is missing");
            request.reports.push_back(report_names[i]);
        }
        try {
            qr::service::printBidPackage(service->service, request);
        } catch (const qr::Error& e) {
            // A report that failed has shown its error already; the package says which.
            const quarvex_status status = e.number() == qr::errc::kInvalidCall
                                              ? QUARVEX_E_INVALID_ARGUMENT
                                          : service->host->shownCount() > 0 ? QUARVEX_SHOWN_ERROR
                                                                            : QUARVEX_E_FAILED;
            return fail(service, status, e.description(), e.number());
        }
        return QUARVEX_OK;
    });
}

QUARVEX_API const char* quarvex_bid_package_report_name(size_t index) {
    try {
        const auto& reports = qr::service::bidPackageReports();
        return index < reports.size() ? reports[index].name : nullptr;
    } catch (...) {
        return nullptr;
    }
}

QUARVEX_API const char* quarvex_method_name(size_t index) {
    try {
        const auto& names = methodNames();
        return index < names.size() ? names[index] : nullptr;
    } catch (...) {
        return nullptr;
    }
}

QUARVEX_API const char* quarvex_last_error(const quarvex_service* service) {
    return service ? service->lastError.c_str() : "";
}

QUARVEX_API int quarvex_last_error_number(const quarvex_service* service) {
    return service ? service->lastErrorNumber : 0;
}

} // extern "C"
