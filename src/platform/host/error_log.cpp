#include "platform/host/error_log.hpp"

#include "platform/host/module_state.hpp"

namespace qr::host {

std::string currentErrorDescription() {
    try {
        throw;
    } catch (const Error& e) {
        return e.description();
    } catch (const std::exception& e) {
        return e.what();
    } catch (...) {
        return "Unknown error";
    }
}

void showError(const std::string& description, const std::string& moduleName,
               const std::string& procedureName) noexcept {
    // Each step on its own: a failure in one is ignored and the next still runs.
    try {
        const std::string text = "Description: " + description + "\r\n" + "Module: " +
                                 moduleName + "\r\n" + "Function: " + procedureName;
        auto container = moduleState().sharedContainer;
        if (container) {
            auto messages = container->messageService();
            if (messages) messages->showErrorDialog("Quarvex Error", text);
        }
    } catch (...) {
    }
    try {
        const std::string logText =
            description + "\r\n" + " in '" + moduleName + "." + procedureName + "'";
        hostClasses().createUsageLog()->recordError(logText, std::string());
    } catch (...) {
    }
}

} // namespace qr::host
