#include "platform/preview/desktop_session.hpp"

#include "platform/preview/gui_application.hpp"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QThread>
#include <cstdlib>
#include <string>

namespace qr::output {

namespace {

bool isSet(const char* name) {
    const char* value = std::getenv(name);
    return value && *value;
}

// The first platform of a list such as "xcb;offscreen" or "xcb:display=:1" names the plugin.
std::string_view pluginName(std::string_view platform) {
    return platform.substr(0, platform.find_first_of(";:"));
}

} // namespace

bool isInteractive(const SessionFacts& facts) {
    if (!facts.hasDisplay || facts.refusedByHost || !facts.onApplicationThread)
        return false;
    const std::string_view plugin = pluginName(facts.qtPlatform);
    return plugin != "offscreen" && plugin != "minimal" && plugin != "minimalegl";
}

SessionFacts currentSessionFacts() {
    SessionFacts facts;
    facts.hasDisplay = isSet("DISPLAY") || isSet("WAYLAND_DISPLAY");
    const char* refusal = std::getenv(kNonInteractiveVariable);
    facts.refusedByHost = refusal && std::string_view(refusal) == "1";
    if (!facts.hasDisplay || facts.refusedByHost) {
        // Nothing will be shown, so Qt is not started just to find that out.
        const char* asked = std::getenv("QT_QPA_PLATFORM");
        facts.qtPlatform = asked ? asked : "";
        return facts;
    }
    ensureGuiApplication();
    facts.qtPlatform = QGuiApplication::platformName().toStdString();
    facts.onApplicationThread = QThread::currentThread() == QCoreApplication::instance()->thread();
    return facts;
}

bool isInteractiveSession() {
    return isInteractive(currentSessionFacts());
}

} // namespace qr::output
