#pragma once
// Driving real windows from a test: Qt on the test run's Xvfb display when there is one,
// keys sent the way a keyboard sends them (shortcuts included), modal dialogs found and driven
// from inside their own event loop, and waits that give up instead of hanging.

#include "platform/output/output_test_support.hpp"
#include "platform/preview/gui_application.hpp"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/file.h>
#include <unistd.h>

namespace qr::test {

inline constexpr const char* kXvfbVariable = "QR_TEST_XVFB_DISPLAY";

/// Starts Qt for window tests and returns the platform it runs on. With QR_TEST_XVFB_DISPLAY
/// set (./run test starts an Xvfb), Qt opens that display; DISPLAY is set only while the
/// application is made, so the rest of the process stays non-interactive. Without it, or when
/// an earlier test of this process has started Qt already, windows live on that platform
/// (offscreen in the suite), where they are just as real but nobody could see them.
inline std::string startWindowTests() {
    if (!QCoreApplication::instance()) {
        const char* display = std::getenv(kXvfbVariable);
        if (display && *display) {
            ScopedEnv onDisplay("DISPLAY", std::string(display));
            // Offscreen when the display cannot be opened after all: the window tests then run
            // unseen (those that need X skip) instead of Qt ending the process.
            ScopedEnv platform("QT_QPA_PLATFORM", std::string("xcb;offscreen"));
            output::ensureGuiApplication();
        } else {
            output::ensureGuiApplication();
        }
    }
    return QGuiApplication::platformName().toStdString();
}

/// Qt started for a window test (startWindowTests) and, on an X server, the display held for
/// this test alone until it ends: windows of tests running at the same time would take the
/// keyboard focus from each other.
class WindowTestSession {
  public:
    WindowTestSession() : m_platform(startWindowTests()) {
        if (m_platform != "xcb")
            return;
        std::string display = std::getenv(kXvfbVariable) ? std::getenv(kXvfbVariable) : "";
        std::replace(display.begin(), display.end(), ':', '-');
        const auto lock =
            std::filesystem::temp_directory_path() / ("quarvex-window-tests" + display + ".lock");
        m_lock = ::open(lock.c_str(), O_CREAT | O_RDWR, 0666);
        if (m_lock >= 0)
            ::flock(m_lock, LOCK_EX);
    }
    ~WindowTestSession() {
        if (m_lock >= 0)
            ::close(m_lock); // releases the display
    }
    WindowTestSession(const WindowTestSession&) = delete;
    WindowTestSession& operator=(const WindowTestSession&) = delete;

    const std::string& platform() const { return m_platform; }

  private:
    std::string m_platform;
    int m_lock = -1;
};

/// Processes events until `done` holds or `timeoutMs` passes; returns whether it held.
inline bool waitUntil(const std::function<bool()>& done, int timeoutMs = 10000) {
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

/// Shows `window`, makes it the active window and waits until it is on the screen.
inline bool showAndActivate(QWidget& window) {
    window.show();
    window.activateWindow();
    return waitUntil([&] {
        return window.windowHandle() && window.windowHandle()->isExposed() &&
               QApplication::activeWindow() == &window;
    });
}

/// The modal dialog of type T that comes up next (nullptr when none comes within the time).
template <class T> T* waitForModal(int timeoutMs = 10000) {
    T* found = nullptr;
    waitUntil(
        [&] {
            found = dynamic_cast<T*>(QApplication::activeModalWidget());
            return found && found->isVisible();
        },
        timeoutMs);
    return found;
}

/// Presses and releases `key` on the focused widget of the active window (or on `target`), as
/// a keyboard would: shortcuts get the key first.
inline void pressKey(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                     QWidget* target = nullptr, const QString& text = {}) {
    if (!target)
        target = QApplication::focusWidget() ? QApplication::focusWidget()
                                             : QApplication::activeWindow();
    if (!target)
        return;
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(target, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QCoreApplication::sendEvent(target, &release);
    QCoreApplication::processEvents();
}

/// Runs `script` from the event loop as soon as it turns (that is, once the caller has entered
/// a modal loop), and closes every window left open after `timeoutMs`, so a script that fails
/// halfway never leaves the test hanging.
class ModalScript {
  public:
    ModalScript(std::function<void()> script, int timeoutMs = 60000) {
        QTimer::singleShot(0, &m_guard, [this, script = std::move(script)] {
            script();
            m_ran = true;
        });
        QTimer::singleShot(timeoutMs, &m_guard, [this] {
            m_timedOut = true;
            for (QWidget* w : QApplication::topLevelWidgets())
                w->close();
        });
    }
    bool ran() const { return m_ran; }
    bool timedOut() const { return m_timedOut; }

  private:
    QObject m_guard; // ends both timers with the script
    bool m_ran = false;
    bool m_timedOut = false;
};

/// Pixels of `image` inside `area` that satisfy `test`.
inline int countPixels(const QImage& image, const QRect& area,
                       const std::function<bool(QRgb)>& test) {
    int count = 0;
    const QRect inside = area & image.rect();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            if (test(image.pixel(x, y)))
                ++count;
        }
    }
    return count;
}

inline bool isInk(QRgb pixel) {
    return qGray(pixel) < 100;
}

} // namespace qr::test
