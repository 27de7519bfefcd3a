#pragma once
// A standalone host whose message box records what it was asked to show, installed for one
// test and removed after it.

#include "platform/host/module_state.hpp"
#include "platform/host/standalone_host.hpp"

#include <memory>
#include <string>
#include <vector>

namespace qr::test {

struct ShownMessage {
    std::string text;
    host::MessageIcon icon;
    std::string title;
};

class RecordingMessageBox : public host::MessageBox {
  public:
    void show(const std::string& text, host::MessageIcon icon, const std::string& title) override {
        shown.push_back({text, icon, title});
    }
    std::vector<ShownMessage> shown;
};

/// Installs a standalone host (with `config`) as the process's host and a recording message
/// box, and sets the host as this thread's shared container. Restores a clean module state
/// when it goes.
class RecordingHost {
  public:
    explicit RecordingHost(host::StandaloneConfig config = {});
    ~RecordingHost();

    std::shared_ptr<host::StandaloneHost> host;
    std::shared_ptr<RecordingMessageBox> messages;
};

} // namespace qr::test
