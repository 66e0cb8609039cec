#pragma once

#include <QPointer>

#include <vector>

class QLineEdit;
class QWidget;

namespace Morvex {

/// While it lives, a widget and what is in it are painted as with no mouse above them. No widget
/// gets an event from it.
class HiddenMouse
{
public:
    explicit HiddenMouse(QWidget *widget);
    ~HiddenMouse();

    HiddenMouse(const HiddenMouse &) = delete;
    HiddenMouse &operator=(const HiddenMouse &) = delete;

private:
    // Any of them may be deleted by what the application does when it is painted.
    std::vector<QPointer<QWidget>> m_underMouse;
};

/// While it lives, a widget and what is in it are painted as they look when nobody uses them: as
/// parts of the active window, without the focus, without a text cursor, and with no mouse above
/// them. No widget gets an event from it.
class RestingLook
{
public:
    explicit RestingLook(QWidget *widget);
    ~RestingLook();

    RestingLook(const RestingLook &) = delete;
    RestingLook &operator=(const RestingLook &) = delete;

private:
    void hideFocus(QWidget *window);
    void hideCursor(QWidget *widget);

    HiddenMouse m_mouse;
    // Any of them may be deleted meanwhile.
    QPointer<QWidget> m_activeWindow;
    QPointer<QWidget> m_focusWidget;
    std::vector<QPointer<QLineEdit>> m_lineEdits;
    QPointer<QWidget> m_textEdit;
    int m_cursorWidth = 0;
};

} // namespace Morvex
