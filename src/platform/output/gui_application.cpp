#include "platform/output/gui_application.hpp"

#include "platform/core/error.hpp"
#include "platform/output/output_error.hpp"

#include <QApplication>
#include <QGuiApplication>
#include <cstdlib>
#include <mutex>

namespace qr::output {

namespace {

bool isSet(const char* name) {
    const char* value = std::getenv(name);
    return value && *value;
}

} // namespace

void ensureGuiApplication() {
    static std::mutex mutex;
    std::lock_guard lock(mutex);
    if (QCoreApplication* existing = QCoreApplication::instance()) {
        if (!qobject_cast<QGuiApplication*>(existing)) {
            throw Error(errc::kComponent, kRenderSource,
                        "The application runs Qt without graphics (a QCoreApplication); pages "
                        "cannot be drawn or printed without a QGuiApplication.");
        }
        return;
    }
    if (!isSet("QT_QPA_PLATFORM") && !isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")) {
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    }
    // Qt keeps referring to argc and argv, so they must outlive the application.
    static int argc = 1;
    static char name[] = "quarvex-reports";
    static char* argv[] = {name, nullptr};
    // Never deleted: the application object must outlive every Qt object the host or this
    // component makes, and tearing it down during static destruction is not safe.
    new QApplication(argc, argv);
}

} // namespace qr::output
