#pragma once

#include <QEvent>

class QWidget;
class QWindow;

namespace Morvex {

struct TypedKey;

/// By the way of the window of the widget on the screen, as far as it has the focus.
void sendKey(QWidget *widget, QEvent::Type type, const TypedKey &key);
/// Pressed and released.
void sendKeyTo(QWindow *window, const TypedKey &key);

/// As window systems do by themselves with the key for it.
void askForContextMenu(const QWidget *widget, const TypedKey &key);

} // namespace Morvex
