#pragma once
// Whether a person can see what the component shows. The preview window and the message boxes
// appear only then; otherwise the preview is written to a file and messages go to standard
// error, so a service, a scheduled job or a test never waits for a window nobody can close.
//   QUARVEX_NONINTERACTIVE=1   never show windows, even with a display

#include <string>

namespace qr::output {

inline constexpr const char* kNonInteractiveVariable = "QUARVEX_NONINTERACTIVE";

/// What decides whether a session is interactive, gathered so the rule can be checked alone.
struct SessionFacts {
    bool hasDisplay = false;         // DISPLAY or WAYLAND_DISPLAY is set and not empty
    bool refusedByHost = false;      // QUARVEX_NONINTERACTIVE is "1"
    std::string qtPlatform;          // the Qt platform in use, or what QT_QPA_PLATFORM asks for
    bool onApplicationThread = true; // the caller runs on the thread of Qt's application object
};

/// True when windows can be shown: a display, no refusal by the host, a Qt platform that puts
/// windows on a screen (not "offscreen" or "minimal"), and the caller on Qt's thread.
bool isInteractive(const SessionFacts& facts);

/// The facts of this process: the environment, and Qt's platform once the application exists.
/// With a display this makes sure Qt's application exists (ensureGuiApplication), because
/// only then is it known whether the display could be opened.
SessionFacts currentSessionFacts();

/// isInteractive(currentSessionFacts()).
bool isInteractiveSession();

} // namespace qr::output
