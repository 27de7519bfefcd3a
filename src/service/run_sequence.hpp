#pragma once
// The run sequence every report goes through: run it, then show the preview (modal: returns when
// the window closes) or print it on the current printer without a dialog.

#include "platform/engine/report.hpp"
#include "platform/host/error_log.hpp"
#include "service/report_objects.hpp"

namespace qr::service {

void runSequence(engine::Report& report, bool preview);

/// Reports the failure in flight the way the typed method `methodName` reports its failures:
/// the error dialog with "PrintService" and the method's name, or, for
/// PrintElevationPartsReport, the "Error Encountered" message box. Call it inside a catch.
void reportTypedMethodFailure(const char* methodName);

/// The typed methods' error handling: runs `body`; any failure is reported as the method
/// reports its failures, the remaining steps stay undone and the call returns normally. The
/// JSON calls read their report data inside it, so a host that speaks JSON sees a reading error
/// as the method's own failure.
template <class Body> void trapTypedMethod(const char* methodName, Body&& body) {
    try {
        body();
    } catch (...) {
        reportTypedMethodFailure(methodName);
    }
}

/// The typed print methods' mechanism: take the thread's report object of `reportClass`, set its
/// members (`setMembers`), run the sequence, release the object, all inside the method's error
/// handling. The object is released on a failure too: its members point into the caller's
/// objects, which the caller may discard once the call returns, and a later request for the
/// same class on this thread must not run over them.
template <class R, class SetMembers>
void runTypedMethod(const char* methodName, const char* reportClass, bool preview,
                    SetMembers&& setMembers) {
    struct Release {
        const char* reportClass;
        ~Release() { releaseReportObject(reportClass); }
    };
    trapTypedMethod(methodName, [&] {
        Release release{reportClass};
        R& report = reportObjectAs<R>(reportClass);
        setMembers(report);
        runSequence(report, preview);
    });
}

} // namespace qr::service
