#include "qtbackend/usagerules.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAction>
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

#include <algorithm>

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

bool isActivating(int key)
{
    return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter ||
           key == Qt::Key_Select;
}

bool isModifier(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt ||
           key == Qt::Key_AltGr || key == Qt::Key_Meta;
}

// Moves the focus on, whatever has it.
bool leavesWidget(int key)
{
    return key == Qt::Key_Tab || key == Qt::Key_Backtab || key == Qt::Key_Escape;
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

bool isByKey(const UsageRule &rule, int key)
{
    if (isModifier(key) || leavesWidget(key) || rule.keys == UsageRule::NoKeys)
        return false;
    return rule.keys == UsageRule::AllKeys || isActivating(key);
}

const QAction *actionAt(const QObject *object, const QPoint &place)
{
    if (const auto *menu = qobject_cast<const QMenu *>(object))
        return menu->actionAt(place);
    const auto *bar = qobject_cast<const QMenuBar *>(object);
    return bar ? bar->actionAt(place) : nullptr;
}

const QAction *actionFor(const QObject *object, int key)
{
    const auto *menu = qobject_cast<const QMenu *>(object);
    if (!menu)
        return nullptr;
    if (isActivating(key))
        return menu->activeAction();
    const QList<QAction *> actions = menu->actions();
    const QKeySequence letter(Qt::ALT | key);
    const auto isMeant = [&](const QAction *action) {
        return action->isVisible() && QKeySequence::mnemonic(action->text()) == letter;
    };
    // Of several the menu chooses none yet.
    const auto found = std::find_if(actions.begin(), actions.end(), isMeant);
    return std::count_if(actions.begin(), actions.end(), isMeant) == 1 ? *found : nullptr;
}

} // namespace Morvex
