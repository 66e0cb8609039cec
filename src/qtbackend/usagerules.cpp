#include "qtbackend/usagerules.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QCalendarWidget>
#include <QComboBox>
#include <QDockWidget>
#include <QGroupBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTextEdit>
#include <QToolBar>
#include <QToolBox>

namespace Morvex {
namespace {

bool inheritsOneOf(const QWidget *widget, std::initializer_list<const QMetaObject *> types)
{
    for (const QMetaObject *type : types) {
        if (widget->metaObject()->inherits(type))
            return true;
    }
    return false;
}

// Buttons by which the toolkit makes up its own widgets have names of its own, or none of use.
bool isPartOfToolkit(const QWidget *widget)
{
    return widget->objectName().startsWith(QLatin1String("qt_")) ||
           widget->inherits("QTableCornerButton");
}

bool isReadOnly(const QWidget *widget)
{
    return widget->property("readOnly").toBool();
}

UsageRule rule(const char *event, bool isByMouse, UsageRule::Keys keys)
{
    return {QLatin1String(event), isByMouse, keys};
}

} // namespace

std::vector<UsageRule> usageRulesOf(const QWidget *widget)
{
    using Rules = std::vector<UsageRule>;
    if (qobject_cast<const QAbstractButton *>(widget))
        return isPartOfToolkit(widget) ? Rules()
                                       : Rules{rule("click", true, UsageRule::ActivatingKeys)};
    if (const auto *group = qobject_cast<const QGroupBox *>(widget))
        return group->isCheckable() ? Rules{rule("click", true, UsageRule::ActivatingKeys)}
                                    : Rules();
    if (const auto *box = qobject_cast<const QComboBox *>(widget)) {
        // That something was chosen the box itself says.
        Rules rules{rule("choose", false, UsageRule::NoKeys)};
        if (box->isEditable())
            rules.push_back(rule("type", false, UsageRule::AllKeys));
        return rules;
    }
    if (inheritsOneOf(widget, {&QLineEdit::staticMetaObject, &QTextEdit::staticMetaObject,
                               &QPlainTextEdit::staticMetaObject}))
        return isReadOnly(widget) ? Rules() : Rules{rule("type", false, UsageRule::AllKeys)};
    if (qobject_cast<const QAbstractSpinBox *>(widget))
        return isReadOnly(widget) ? Rules() : Rules{rule("change", true, UsageRule::AllKeys)};
    if (const auto *header = qobject_cast<const QHeaderView *>(widget))
        return header->sectionsClickable() && header->isSortIndicatorShown()
                   ? Rules{rule("click", true, UsageRule::NoKeys)}
                   : Rules();
    if (qobject_cast<const QScrollBar *>(widget))
        return {};
    if (inheritsOneOf(widget,
                      {&QAbstractItemView::staticMetaObject, &QCalendarWidget::staticMetaObject}))
        return {rule("choose", true, UsageRule::AllKeys)};
    if (qobject_cast<const QAbstractSlider *>(widget))
        return {rule("change", true, UsageRule::AllKeys)};
    const bool isOwn = !isContainer(widget) && !widget->isWindow() &&
                       !qobject_cast<const QAbstractScrollArea *>(widget) &&
                       !qobject_cast<const QTabBar *>(widget);
    // An application's own widget takes the focus when there is something to do with it.
    return isOwn && (widget->focusPolicy() & Qt::ClickFocus)
               ? Rules{rule("use", true, UsageRule::AllKeys)}
               : Rules();
}

bool isOneElement(const QWidget *widget)
{
    return inheritsOneOf(widget,
                         {&QAbstractButton::staticMetaObject, &QAbstractSpinBox::staticMetaObject,
                          &QCalendarWidget::staticMetaObject, &QComboBox::staticMetaObject,
                          &QHeaderView::staticMetaObject, &QLineEdit::staticMetaObject,
                          &QScrollBar::staticMetaObject, &QTabBar::staticMetaObject});
}

bool isContainer(const QWidget *widget)
{
    return inheritsOneOf(widget, {&QDockWidget::staticMetaObject, &QGroupBox::staticMetaObject,
                                  &QMdiSubWindow::staticMetaObject, &QMenu::staticMetaObject,
                                  &QMenuBar::staticMetaObject, &QStatusBar::staticMetaObject,
                                  &QTabBar::staticMetaObject, &QTabWidget::staticMetaObject,
                                  &QToolBar::staticMetaObject, &QToolBox::staticMetaObject});
}

} // namespace Morvex
