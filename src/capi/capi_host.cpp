#include "capi/capi_host.hpp"

#include "platform/core/error.hpp"
#include "platform/preview/message_box.hpp"

#include <mutex>

namespace qr::capi {

namespace {

// The host of the C call running on this thread, if any.
thread_local std::shared_ptr<CapiHost> t_activeHost;

CapiHost& activeHost() {
    if (!t_activeHost) throw Error::objectNotSet();
    return *t_activeHost;
}

void showOnPlatform(const std::string& text, host::MessageIcon icon, const std::string& title) {
    const auto platformIcon = icon == host::MessageIcon::Information ? output::MessageBoxIcon::Information
                              : icon == host::MessageIcon::Critical  ? output::MessageBoxIcon::Critical
                                                                     : output::MessageBoxIcon::None;
    output::DesktopMessageBox().show(text, platformIcon, title);
}

// The process-wide host classes: those of the active host.
class RoutedHostClasses : public host::HostClasses {
  public:
    std::unique_ptr<host::UserService> createUserService() override {
        return activeHost().createUserService();
    }
    std::unique_ptr<host::CompanyService> createCompanyService() override {
        return activeHost().createCompanyService();
    }
    std::unique_ptr<host::VendorService> createVendorService() override {
        return activeHost().createVendorService();
    }
    std::unique_ptr<host::UserSettingService> createUserSettingService() override {
        return activeHost().createUserSettingService();
    }
    std::unique_ptr<host::PathHelper> createPathHelper() override {
        return activeHost().createPathHelper();
    }
    std::unique_ptr<host::FolderMaker> createFolderMaker() override {
        return activeHost().createFolderMaker();
    }
    std::unique_ptr<host::UsageLog> createUsageLog() override {
        return activeHost().createUsageLog();
    }
};

// The process-wide message box: the active host's, the platform's outside a C call.
class RoutedMessageBox : public host::MessageBox {
  public:
    void show(const std::string& text, host::MessageIcon icon, const std::string& title) override {
        if (t_activeHost)
            t_activeHost->showMessage(text, icon, title);
        else
            showOnPlatform(text, icon, title);
    }
};

// A usage log that hands each entry to the C host's callback.
class CallbackUsageLog : public host::UsageLog {
  public:
    CallbackUsageLog(quarvex_usage_log_fn fn, void* data) : m_fn(fn), m_data(data) {}
    void recordUsage(const std::string& outcome, const std::string& category,
                     const std::string& label) override {
        m_fn(m_data, outcome.c_str(), category.c_str(), label.c_str(), nullptr);
    }
    void recordError(const std::string& text, const std::string&) override {
        m_fn(m_data, "Error", "", "", text.c_str());
    }

  private:
    quarvex_usage_log_fn m_fn;
    void* m_data;
};

quarvex_icon iconOf(host::MessageIcon icon) {
    switch (icon) {
    case host::MessageIcon::Information: return QUARVEX_ICON_INFORMATION;
    case host::MessageIcon::Critical: return QUARVEX_ICON_CRITICAL;
    case host::MessageIcon::None: break;
    }
    return QUARVEX_ICON_NONE;
}

} // namespace

CapiHost::CapiHost() : host::StandaloneHost(host::StandaloneConfig{}) {}

void CapiHost::showErrorDialog(const std::string& title, const std::string& text) {
    ++m_shown;
    m_lastShown = text;
    if (callbacks.errorDialog)
        callbacks.errorDialog(callbacks.errorDialogData, title.c_str(), text.c_str());
    else
        showOnPlatform(text, host::MessageIcon::Critical, title);
}

void CapiHost::showMessage(const std::string& text, host::MessageIcon icon,
                           const std::string& title) {
    ++m_shown;
    m_lastShown = text;
    if (callbacks.messageBox)
        callbacks.messageBox(callbacks.messageBoxData, title.c_str(), text.c_str(), iconOf(icon));
    else
        showOnPlatform(text, icon, title);
}

std::unique_ptr<host::UsageLog> CapiHost::createUsageLog() {
    if (callbacks.usageLog)
        return std::make_unique<CallbackUsageLog>(callbacks.usageLog, callbacks.usageLogData);
    return StandaloneHost::createUsageLog();
}

void CapiHost::resetShown() {
    m_shown = 0;
    m_lastShown.clear();
}

ActiveHost::ActiveHost(std::shared_ptr<CapiHost> host) : m_previous(std::move(t_activeHost)) {
    static std::once_flag installed;
    std::call_once(installed, [] {
        host::installHostClasses(std::make_shared<RoutedHostClasses>());
        host::installMessageBox(std::make_shared<RoutedMessageBox>());
    });
    t_activeHost = std::move(host);
}

ActiveHost::~ActiveHost() { t_activeHost = std::move(m_previous); }

} // namespace qr::capi
