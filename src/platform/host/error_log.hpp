#pragma once
// The one error-report procedure and the trapping convention built on it.

#include "platform/core/error.hpp"

#include <exception>
#include <string>

namespace qr::host {

/// Shows the host's error dialog (title "Quarvex Error", text "Description: ...", "Module: ...",
/// "Function: ..." on three lines joined by CR LF) through the shared container's message
/// service, then records an error entry "<description>\r\n in '<module>.<procedure>'" in the
/// host's usage log. A step that fails is skipped; never raises.
void showError(const std::string& description, const std::string& moduleName,
               const std::string& procedureName) noexcept;

/// The description of the exception in flight (qr::Error's description, or what()).
std::string currentErrorDescription();

/// Runs a handler that traps its errors: on an error it calls showError with the error's
/// description, the report class's (or module's) name and the handler's name, and leaves the
/// handler; the caller carries on as if the handler had returned.
template <class Body>
void runTrapped(const std::string& moduleName, const std::string& procedureName, Body&& body) {
    try {
        body();
    } catch (...) {
        showError(currentErrorDescription(), moduleName, procedureName);
    }
}

} // namespace qr::host
