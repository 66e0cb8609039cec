#include "qtbackend/ownclass.h"

#include <QAbstractItemDelegate>
#include <QWidget>

#include <cstring>
#include <dlfcn.h>

namespace Morvex {
namespace {

// Null when that is not known.
const void *libraryOf(const void *address)
{
    Dl_info info = {};
    return ::dladdr(address, &info) != 0 ? info.dli_fbase : nullptr;
}

const char *tableOf(const void *object)
{
    return *static_cast<const char *const *>(object);
}

} // namespace

// By the table of its virtual functions, as not each class has a meta object of its own.
bool isOfOwnClass(const QWidget *widget)
{
    return libraryOf(tableOf(widget)) != libraryOf(&QWidget::staticMetaObject);
}

bool isOwnPart(const QWidget *widget)
{
    return !widget->isWindow() && isOfOwnClass(widget) &&
           !widget->findChild<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
}

bool handlesMouse(const QAbstractItemDelegate *delegate)
{
    if (!delegate)
        return false;
    // The platform's pointers to virtual functions begin with the place in the table, and may mark
    // it in its lowest bit.
    const auto handler = &QAbstractItemDelegate::editorEvent;
    std::ptrdiff_t place = 0;
    std::memcpy(&place, &handler, sizeof place);
    const void *function = nullptr;
    std::memcpy(&function, tableOf(delegate) + (place & ~std::ptrdiff_t(1)), sizeof function);
    return libraryOf(function) != libraryOf(&QWidget::staticMetaObject);
}

} // namespace Morvex
