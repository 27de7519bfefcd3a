#include "support/host/recording_host.hpp"

namespace qr::test {

RecordingHost::RecordingHost(host::StandaloneConfig config)
    : host(std::make_shared<host::StandaloneHost>(std::move(config))),
      messages(std::make_shared<RecordingMessageBox>()) {
    host::moduleState() = host::ModuleState{};
    host::installHostClasses(host);
    host::installMessageBox(messages);
    host::moduleState().sharedContainer = host;
}

RecordingHost::~RecordingHost() {
    host::moduleState() = host::ModuleState{};
    host::installHostClasses(nullptr);
    host::installMessageBox(nullptr);
}

} // namespace qr::test
