#include "qtbackend/ownclass.h"

#include <QWidget>

#include <dlfcn.h>

namespace Morvex {
namespace {

// Null when that is not known.
const void *libraryOf(const void *address)
{
    Dl_info info = {};
    return ::dladdr(address, &info) != 0 ? info.dli_fbase : nullptr;
}

} // namespace

// By the table of its virtual functions, as not each class has a meta object of its own.
bool isOfOwnClass(const QWidget *widget)
{
    const void *table = *reinterpret_cast<const void *const *>(widget);
    return libraryOf(table) != libraryOf(&QWidget::staticMetaObject);
}

} // namespace Morvex
