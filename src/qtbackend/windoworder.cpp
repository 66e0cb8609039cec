#include "qtbackend/windoworder.h"

#include <QApplication>
#include <QEvent>
#include <QSet>

#include <algorithm>
#include <tuple>

namespace Morvex {
namespace {

bool isNamedBefore(const QWidget *a, const QWidget *b)
{
    const auto key = [](const QWidget *widget) {
        return std::make_tuple(widget->objectName(), widget->windowTitle(),
                               QLatin1String(widget->metaObject()->className()));
    };
    return key(a) < key(b);
}

bool isRoot(const QWidget *window)
{
    return !window->parentWidget() && window->windowType() != Qt::Desktop;
}

QWidgetList rootsByName()
{
    QWidgetList roots;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (isRoot(window))
            roots += window;
    }
    std::stable_sort(roots.begin(), roots.end(), isNamedBefore);
    return roots;
}

} // namespace

WindowOrder::WindowOrder()
{
    for (QWidget *window : rootsByName()) {
        if (window->isVisible())
            add(window);
    }
    qApp->installEventFilter(this);
}

QWidgetList WindowOrder::windows() const
{
    QWidgetList ordered;
    QSet<const QWidget *> shown;
    for (const QPointer<QWidget> &window : m_shown) {
        if (window && isRoot(window)) {
            ordered += window;
            shown.insert(window);
        }
    }
    for (QWidget *window : rootsByName()) {
        if (!shown.contains(window))
            ordered += window;
    }
    return ordered;
}

bool WindowOrder::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && watched->isWidgetType()) {
        auto *widget = static_cast<QWidget *>(watched);
        if (widget->isWindow() && isRoot(widget))
            add(widget);
    }
    return false;
}

void WindowOrder::add(QWidget *window)
{
    // The address of a window that no longer exists may be that of another one by now.
    if (m_known.value(window) == window)
        return;
    m_known.insert(window, window);
    m_shown.emplace_back(window);
    if (m_shown.size() < m_cleanUpAt)
        return;
    m_shown.erase(std::remove(m_shown.begin(), m_shown.end(), nullptr), m_shown.end());
    m_known.clear();
    for (const QPointer<QWidget> &shown : m_shown)
        m_known.insert(shown, shown);
    // So that the cost of looking at all of them is shared by many.
    m_cleanUpAt = std::max<std::size_t>(1024, 2 * m_shown.size());
}

} // namespace Morvex
