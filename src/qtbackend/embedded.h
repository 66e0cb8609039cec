#pragma once

class QGraphicsProxyWidget;
class QGraphicsView;
class QWidget;

namespace Morvex {

/// What shows the window of the widget in a scene; null for one with a window on the screen.
QGraphicsProxyWidget *proxyOf(const QWidget *widget);

/// Where a user sees the window of a widget that is embedded in a scene; null for others, and where
/// none shows it.
QGraphicsView *viewOfEmbedded(const QWidget *widget);

/// Whether the widget is embedded in the scene that this view, or the view of this viewport, shows.
bool isEmbeddedIn(const QWidget *widget, const QWidget *view);

/// That which has the focus within the scene where @p focus is a view of one; else @p focus.
QWidget *focusWithin(QWidget *focus);

} // namespace Morvex
