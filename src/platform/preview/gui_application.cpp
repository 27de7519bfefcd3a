#include "platform/preview/gui_application.hpp"

#include "platform/core/error.hpp"
#include "platform/output/output_error.hpp"

#include <QApplication>
#include <QGuiApplication>
#include <cstdlib>
#include <mutex>
#include <string>

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
    if (!isSet("QT_QPA_PLATFORM")) {
        // A display that cannot be opened (a stale DISPLAY after a remote session ended) makes
        // Qt abort the whole process; ending the list with "offscreen" lets it carry on
        // without windows instead.
        std::string platforms;
        if (isSet("DISPLAY"))
            platforms += "xcb;";
        if (isSet("WAYLAND_DISPLAY"))
            platforms += "wayland;";
        platforms += "offscreen";
        ::setenv("QT_QPA_PLATFORM", platforms.c_str(), 1);
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
