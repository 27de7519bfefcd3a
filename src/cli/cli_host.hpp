#pragma once
// The standalone host as the command line sets it up: installed for the process, with a message
// box that counts what it shows (so the exit code can say whether an error was shown) and
// passes it on to the platform's box (standard error when not interactive).

#include "platform/host/standalone_host.hpp"

#include <memory>
#include <string>

namespace qr::cli {

class CliHost {
  public:
    explicit CliHost(host::StandaloneConfig config);
    ~CliHost();

    std::shared_ptr<host::StandaloneHost> host() const { return m_host; }
    /// How many dialogs and message boxes were shown so far.
    int messagesShown() const;

  private:
    std::shared_ptr<host::StandaloneHost> m_host;
    std::shared_ptr<host::MessageBox> m_counting;
};

/// The command's exit code after the work: 0 when nothing was shown, 1 when an error dialog or
/// a message box was.
int exitCodeFor(const CliHost& host);

} // namespace qr::cli
