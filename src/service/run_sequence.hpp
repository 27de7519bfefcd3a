#pragma once
// The run sequence every report goes through: run it, then show the preview (modal: returns when
// the window closes) or print it on the current printer without a dialog.

#include "platform/engine/report.hpp"
#include "platform/host/error_log.hpp"
#include "service/report_objects.hpp"

namespace qr::service {

void runSequence(engine::Report& report, bool preview);

/// The typed print methods' mechanism: take the thread's report object of `reportClass`, set its
/// members (`setMembers`), run the sequence, release the object. Any failure shows the error
/// dialog with "PrintService" and the method's name, leaves the remaining steps undone and
/// returns normally.
template <class R, class SetMembers>
void runTypedMethod(const char* methodName, const char* reportClass, bool preview,
                    SetMembers&& setMembers) {
    try {
        R& report = reportObjectAs<R>(reportClass);
        setMembers(report);
        runSequence(report, preview);
        releaseReportObject(reportClass);
    } catch (...) {
        host::showError(host::currentErrorDescription(), "PrintService", methodName);
    }
}

} // namespace qr::service
