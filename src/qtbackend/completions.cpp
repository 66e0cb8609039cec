#include "qtbackend/completions.h"

#include <QAbstractItemView>
#include <QApplication>

namespace Morvex {

void leaveCompletions(const QObject *object)
{
    auto *list = qobject_cast<QAbstractItemView *>(QApplication::activePopupWidget());
    const QWidget *field = list ? list->focusProxy() : nullptr;
    const auto *widget = qobject_cast<const QWidget *>(object);
    const bool isOfField = widget && field &&
                           (widget == field || widget->focusProxy() == field ||
                            field->focusProxy() == widget || field->parentWidget() == widget);
    if (field && !isOfField && (!widget || (widget != list && !list->isAncestorOf(widget))))
        list->close();
}

} // namespace Morvex
