#include "cli/cli_host.hpp"

#include "platform/host/module_state.hpp"
#include "platform/preview/desktop_session.hpp"
#include "platform/preview/message_box.hpp"

#include <atomic>

namespace qr::cli {

namespace {

// The platform's message box: a Qt dialog on a desktop, a line on standard error otherwise.
// Shown as a dialog, the text also goes to standard error, so a script that runs the command
// sees why it exited with 1.
class PlatformMessageBox : public host::MessageBox {
  public:
    void show(const std::string& text, host::MessageIcon icon, const std::string& title) override {
        const auto qtIcon = icon == host::MessageIcon::Information
                                ? output::MessageBoxIcon::Information
                            : icon == host::MessageIcon::Critical ? output::MessageBoxIcon::Critical
                                                                  : output::MessageBoxIcon::None;
        const bool dialog = output::isInteractiveSession();
        m_box.show(text, qtIcon, title);
        if (dialog)
            m_stderr.show(text, icon, title);
    }

  private:
    output::DesktopMessageBox m_box;
    host::StderrMessageBox m_stderr;
};

class CountingMessageBox : public host::MessageBox {
  public:
    explicit CountingMessageBox(std::shared_ptr<host::MessageBox> inner)
        : m_inner(std::move(inner)) {}
    void show(const std::string& text, host::MessageIcon icon, const std::string& title) override {
        ++shown;
        m_inner->show(text, icon, title);
    }
    std::atomic<int> shown{0};

  private:
    std::shared_ptr<host::MessageBox> m_inner;
};

} // namespace

CliHost::CliHost(host::StandaloneConfig config)
    : m_host(std::make_shared<host::StandaloneHost>(std::move(config))),
      m_counting(std::make_shared<CountingMessageBox>(std::make_shared<PlatformMessageBox>())) {
    host::installHostClasses(m_host);
    host::installMessageBox(m_counting);
    host::moduleState().sharedContainer = m_host;
}

CliHost::~CliHost() {
    host::moduleState().sharedContainer.reset();
    host::installMessageBox(nullptr);
    host::installHostClasses(nullptr);
}

int CliHost::messagesShown() const {
    return static_cast<const CountingMessageBox&>(*m_counting).shown.load();
}

int exitCodeFor(const CliHost& host) {
    return host.messagesShown() == 0 ? 0 : 1;
}

} // namespace qr::cli
