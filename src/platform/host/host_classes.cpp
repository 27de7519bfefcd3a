#include "platform/core/error.hpp"
#include "platform/host/module_state.hpp"
#include "platform/host/services.hpp"

#include <iostream>
#include <mutex>

namespace qr::host {

namespace {

struct Installed {
    std::mutex mutex;
    std::shared_ptr<HostClasses> classes;
    std::shared_ptr<MessageBox> box;
};

Installed& installed() {
    static Installed instance;
    return instance;
}

} // namespace

void installHostClasses(std::shared_ptr<HostClasses> classes) {
    std::lock_guard lock(installed().mutex);
    installed().classes = std::move(classes);
}

HostClasses& hostClasses() {
    std::lock_guard lock(installed().mutex);
    if (!installed().classes) throw Error::objectNotSet();
    return *installed().classes;
}

void installMessageBox(std::shared_ptr<MessageBox> box) {
    std::lock_guard lock(installed().mutex);
    installed().box = std::move(box);
}

MessageBox& messageBox() {
    std::lock_guard lock(installed().mutex);
    if (!installed().box) installed().box = std::make_shared<StderrMessageBox>();
    return *installed().box;
}

void StderrMessageBox::show(const std::string& text, MessageIcon, const std::string& title) {
    if (title.empty())
        std::cerr << text << std::endl;
    else
        std::cerr << title << ": " << text << std::endl;
}

ModuleState& moduleState() {
    thread_local ModuleState state;
    return state;
}

} // namespace qr::host
