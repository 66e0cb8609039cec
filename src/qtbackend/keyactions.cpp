#include "qtbackend/keyactions.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/menupath.h"
#include "qtbackend/recordedkeys.h"
#include "qtbackend/recordedtarget.h"
#include "qtbackend/usagerules.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMetaProperty>
#include <QShortcutEvent>

#include <utility>

namespace Morvex {
namespace {

// Protected members of the toolkit's class.
struct ViewAccess : QAbstractItemView
{
    static bool isEditing(const QAbstractItemView *view)
    {
        return (view->*(&ViewAccess::state))() == EditingState;
    }
};

// What keys are for now; null for none.
QWidget *keyTarget()
{
    QWidget *popup = QApplication::activePopupWidget();
    QWidget *target = popup && popup->focusWidget() ? popup->focusWidget() : popup;
    if (!target)
        target = QApplication::focusWidget();
    // A menu that was closed may still have the focus.
    if (!target || !target->isVisible())
        target = QApplication::activeWindow();
    while (target && target->focusProxy())
        target = target->focusProxy();
    const bool isFocusable =
        !target || target->isWindow() || popup || target->focusPolicy() != Qt::NoFocus;
    return isFocusable ? target : target->window();
}

bool isReadOnly(const QWidget *widget)
{
    return widget->property("readOnly").toBool() && !widget->inherits("QComboBox");
}

// The view whose item the widget edits; null for any other widget.
QAbstractItemView *editedView(const QWidget *editor)
{
    const QWidget *viewport = editor ? editor->parentWidget() : nullptr;
    auto *view = qobject_cast<QAbstractItemView *>(viewport ? viewport->parentWidget() : nullptr);
    const bool isText =
        qobject_cast<const QLineEdit *>(editor) || qobject_cast<const QAbstractSpinBox *>(editor);
    return isText && view && view->viewport() == viewport && view->currentIndex().isValid() &&
                   ViewAccess::isEditing(view)
               ? view
               : nullptr;
}

// Of a field, also within a spin box or a combo box.
bool isAllSelected(const QWidget *field)
{
    const auto *line = qobject_cast<const QLineEdit *>(field);
    if (!line)
        line = field->findChild<QLineEdit *>(QString(), Qt::FindDirectChildrenOnly);
    return line && line->hasSelectedText() && line->selectedText() == line->text();
}

QString editedText(const QWidget *editor)
{
    return editor->property(editor->metaObject()->userProperty().name()).toString();
}

} // namespace

// Most keys are offered first and pressed then.
bool KeyActions::isKnown(const QKeyEvent &event)
{
    const bool isOffer = event.type() == QEvent::ShortcutOverride;
    const bool isKnown =
        !isOffer && event.timestamp() == m_offeredTime && event.key() == m_offeredKey;
    m_offeredKey = isOffer ? event.key() : 0;
    m_offeredTime = event.timestamp();
    return isKnown;
}

void KeyActions::press(const QKeyEvent &event)
{
    m_lastKey = 0;
    QWidget *popup = QApplication::activePopupWidget();
    if (auto *menu = qobject_cast<QMenu *>(popup)) {
        // One that another menu has opened is not open in the script.
        if (event.key() == Qt::Key_Escape && firstMenuOf(menu) == menu)
            m_report.add(QStringLiteral("type"), menu,
                         {{QStringLiteral("text"), QStringLiteral("<Esc>")}});
        auto *action = const_cast<QAction *>(actionFor(menu, event.key()));
        if (!action || !action->isEnabled() || action->isSeparator() || action->menu())
            return;
        const MenuPath path = menuPathOf(menu, action);
        m_report.add(QStringLiteral("click"), path.owner, {{QStringLiteral("item"), path.item}});
        return;
    }
    QWidget *target = keyTarget();
    if (!target || (popup && isForList(popup, event)))
        return;
    const auto *button = qobject_cast<QAbstractButton *>(target);
    if (button && isPushKey(event) && !event.isAutoRepeat())
        m_lastKey = m_report.add(QStringLiteral("click"), target);
    else if (!button || !isPushKey(event))
        type(target, event);
}

bool KeyActions::isForList(QWidget *popup, const QKeyEvent &event)
{
    QComboBox *box = comboBoxOfList(popup);
    if (!box)
        return false;
    const QModelIndex index = box->view()->currentIndex();
    if (!isChoiceKey(event) || !index.isValid())
        return true;
    m_choice.list = popup;
    m_choice.number = m_report.add(QStringLiteral("click"), box,
                                   {{QStringLiteral("item"), selectorOf(box, index.row())}});
    return true;
}

void KeyActions::type(QWidget *target, const QKeyEvent &event)
{
    const QString keys = typedKeyOf(event);
    const bool isForMenuBar = qobject_cast<QMenuBar *>(QApplication::focusWidget()) &&
                              !(event.modifiers() & Qt::ControlModifier);
    if (keys.isEmpty() || isForMenuBar)
        return;
    const bool isSecret = isSecretInput(target);
    // How many there are says how long the secret is.
    if (isSecret && isCursorKey(event))
        return;
    if (isSecret && !isHarmlessInSecret(event)) {
        m_typed.addSecret(target);
        return;
    }
    const bool isText = !keys.startsWith(QLatin1Char('<')) || keys == QLatin1String("<<");
    if (isText && isReadOnly(target))
        return;
    m_editor = !isSecret && editedView(target) ? target : nullptr;
    if (m_editor && (isTabKey(event) || isChoiceKey(event)))
        return commitEdit();
    const bool isReplacing =
        isText || event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete;
    if (std::exchange(m_hasMovedFocus, false) && isReplacing && isAllSelected(target))
        m_report.add(QStringLiteral("type"), target,
                     {{QStringLiteral("text"), QStringLiteral("<Ctrl+A>")}});
    m_lastKey = m_typed.add(target, keys);
    if (isTabKey(event))
        m_tab = {QApplication::focusWidget(), m_lastKey};
}

void KeyActions::leaveEditor(const QWidget *pressed)
{
    if (m_editor && pressed != m_editor && !m_editor->isAncestorOf(pressed) && editedView(m_editor))
        commitEdit();
}

void KeyActions::commitEdit()
{
    QAbstractItemView *view = editedView(m_editor);
    const QVariantList item = selectorOf(view, view->currentIndex());
    m_report.add(QStringLiteral("edit"), view,
                 {{QStringLiteral("item"), item},
                  {QStringLiteral("text"), editedText(m_editor)},
                  {QStringLiteral("editor"), m_report.nameOf(m_editor)}});
    m_editor = nullptr;
}

void KeyActions::shortcut(QObject *owner, const QShortcutEvent &event)
{
    if (event.key().count() > 1) {
        const QString last =
            QKeySequence(event.key()[event.key().count() - 1]).toString(QKeySequence::PortableText);
        m_report.add(QStringLiteral("type"), keyTarget(),
                     {{QStringLiteral("text"), QLatin1Char('<') + last + QLatin1Char('>')}});
        return;
    }
    m_hasMovedFocus = m_hasMovedFocus || qobject_cast<QLabel *>(owner);
    if (qobject_cast<QMenuBar *>(owner) || qobject_cast<QLabel *>(owner))
        m_report.cancel(m_lastKey);
    else if (qobject_cast<QAbstractButton *>(owner))
        m_report.replace(m_lastKey, QStringLiteral("click"), owner);
}

void KeyActions::inputMethod(QObject *receiver, const QInputMethodEvent &event)
{
    auto *target = qobject_cast<QWidget *>(receiver);
    while (target && target->focusProxy())
        target = target->focusProxy();
    if (!target || event.commitString().isEmpty())
        return;
    if (isSecretInput(target))
        m_typed.addSecret(target);
    else
        m_report.add(QStringLiteral("type"), target,
                     {{QStringLiteral("text"), typedTextOf(event.commitString())}});
}

void KeyActions::settle()
{
    // A key that only moves the focus is none that a script would type.
    if (m_tab.number > 0 && m_tab.focus != QApplication::focusWidget()) {
        m_report.cancel(m_tab.number);
        m_hasMovedFocus = true;
    }
    m_tab = {};
    if (m_choice.list && m_choice.list->isVisible())
        m_report.cancel(m_choice.number);
    m_choice = {};
}

} // namespace Morvex
