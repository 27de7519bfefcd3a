#pragma once
// The host that the C interface gives the component: the standalone host (users, firm, vendor
// and settings from the databases, folders through std::filesystem), with the error dialog, the
// message box and the usage log going to the C host's callbacks when it set them and to the
// built-in ones (the platform's message box; the master database's UsageLog table) otherwise.
//
// The component finds its host classes and its message box through process-wide hooks, while
// every C service has its own callbacks. So the hooks are installed once, and forward to the
// host of the service whose call runs on the calling thread (ActiveHost).

#include "quarvex_reports.h"
#include "platform/host/standalone_host.hpp"

#include <memory>
#include <string>

namespace qr::capi {

/// The C host's callbacks; a null function means the built-in one.
struct Callbacks {
    quarvex_error_dialog_fn errorDialog = nullptr;
    void* errorDialogData = nullptr;
    quarvex_message_box_fn messageBox = nullptr;
    void* messageBoxData = nullptr;
    quarvex_usage_log_fn usageLog = nullptr;
    void* usageLogData = nullptr;
};

class CapiHost : public host::StandaloneHost {
  public:
    CapiHost();

    Callbacks callbacks;

    void showErrorDialog(const std::string& title, const std::string& text) override;
    std::unique_ptr<host::UsageLog> createUsageLog() override;
    /// The platform message box as this host shows it.
    void showMessage(const std::string& text, host::MessageIcon icon, const std::string& title);

    /// Forgets what was shown so far (at the start of each C call).
    void resetShown();
    /// How many dialogs and message boxes were shown since resetShown, and the last one's text.
    int shownCount() const { return m_shown; }
    const std::string& lastShown() const { return m_lastShown; }

  private:
    int m_shown = 0;
    std::string m_lastShown;
};

/// While it lives, the component's host classes and message box on this thread are `host`'s.
/// The first one installs the process-wide hooks.
class ActiveHost {
  public:
    explicit ActiveHost(std::shared_ptr<CapiHost> host);
    ~ActiveHost();
    ActiveHost(const ActiveHost&) = delete;
    ActiveHost& operator=(const ActiveHost&) = delete;

  private:
    std::shared_ptr<CapiHost> m_previous;
};

} // namespace qr::capi
