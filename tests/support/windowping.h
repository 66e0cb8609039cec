#pragma once

#include <QString>

#include <xcb/xcb.h>

namespace MorvexTest {

/// Asks the program of a window whether it is there, as window managers do. It answers in the order
/// of its input.
class WindowPing
{
public:
    WindowPing(const QString &display, xcb_window_t window);
    ~WindowPing();

    WindowPing(const WindowPing &) = delete;
    WindowPing &operator=(const WindowPing &) = delete;

    /// Waits for the answer, or until the window no longer exists. False when neither comes within
    /// half a minute.
    bool isAnswered();

private:
    xcb_atom_t atom(const char *name);
    bool isThere();
    void ask();
    bool takeAnswer();

    xcb_connection_t *m_connection;
    xcb_window_t m_window;
    xcb_window_t m_root = 0;
    xcb_atom_t m_protocols;
    xcb_atom_t m_ping;
    uint32_t m_number = 0;
};

} // namespace MorvexTest
