#include "qtbackend/windoworder.h"

#include <QApplication>
#include <QEvent>

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
    const QWidgetList roots = rootsByName();
    QWidgetList ordered;
    for (const QPointer<QWidget> &window : m_shown) {
        if (roots.contains(window))
            ordered += window;
    }
    for (QWidget *window : roots) {
        if (!ordered.contains(window))
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
    m_shown.erase(std::remove(m_shown.begin(), m_shown.end(), nullptr), m_shown.end());
    if (std::find(m_shown.begin(), m_shown.end(), window) == m_shown.end())
        m_shown.emplace_back(window);
}

} // namespace Morvex
