#include "qtbackend/keyactions.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/celleditor.h"
#include "qtbackend/embedded.h"
#include "qtbackend/focusmove.h"
#include "qtbackend/itemselectors.h"
#include "qtbackend/menubutton.h"
#include "qtbackend/menupath.h"
#include "qtbackend/menuuse.h"
#include "qtbackend/objecttree.h"
#include "qtbackend/recordedkeys.h"
#include "qtbackend/recordedtarget.h"
#include "qtbackend/usagerules.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QShortcutEvent>
#include <QTabBar>

#include <utility>

namespace Morvex {
namespace {

const QLatin1String selectAll("<Ctrl+A>");

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
    target = focusWithin(target);
    const bool isFocusable =
        !target || target->isWindow() || popup || target->focusPolicy() != Qt::NoFocus;
    return isFocusable ? target : target->window();
}

bool isCursorKey(const QKeyEvent &event)
{
    return event.key() >= Qt::Key_Home && event.key() <= Qt::Key_PageDown;
}

bool isReadOnly(const QWidget *widget)
{
    return widget->property("readOnly").toBool() && !widget->inherits("QComboBox");
}

// In a field of it, say.
bool isFocusWithin(const QMenu *menu)
{
    const QWidget *focus = menu->focusWidget();
    return focus && focus != menu && focus->isVisible();
}

// A shortcut that works wherever in the window the focus is.
bool isOfWindow(const QObject *owner)
{
    if (const auto *action = qobject_cast<const QAction *>(owner))
        return action->shortcutContext() >= Qt::WindowShortcut &&
               action->shortcutContext() != Qt::WidgetWithChildrenShortcut;
    const auto *shortcut = qobject_cast<const QShortcut *>(owner);
    return shortcut && shortcut->context() >= Qt::WindowShortcut &&
           shortcut->context() != Qt::WidgetWithChildrenShortcut;
}

// Widgets of which one thinks when one types, also when it is a shortcut.
bool isTypedInto(const QWidget *widget)
{
    return fieldOf(widget) || hasLines(widget) || qobject_cast<const QAbstractItemView *>(widget);
}

// Null when the widget has no field that may refuse keys.
const QLineEdit *choosyField(const QWidget *target)
{
    const QLineEdit *line = fieldOf(target);
    const bool isChoosy =
        line && (line->validator() || !line->inputMask().isEmpty() ||
                 (line->text().size() >= line->maxLength() && !line->hasSelectedText()));
    return isChoosy ? line : nullptr;
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
    m_pressedIn = nullptr;
    m_pressedKeys.clear();
    m_hasTakenMove = false;
    if (std::exchange(m_isMenuKeyKnown, false) && event.key() == Qt::Key_Menu)
        return;
    QWidget *popup = QApplication::activePopupWidget();
    auto *menu = qobject_cast<QMenu *>(popup);
    if (menu && !isFocusWithin(menu))
        return pressInMenu(menu, event);
    QWidget *target = keyTarget();
    // The list of a combo box in a scene is no popup of the screen.
    if (target && !popup && comboBoxOfList(target))
        popup = target->window();
    if (!target || (popup && isForList(popup, event)))
        return;
    m_menus.enter(target);
    m_pressedIn = target;
    m_pressedKeys = typedKeyOf(event);
    if (!isWithModifiers(event) && !isTypedInto(target))
        m_typed.keepName(target);
    const auto *button = qobject_cast<QAbstractButton *>(target);
    if (!button || !isPushKey(event))
        return type(target, event);
    // The choice from its menu says that it was opened.
    if (event.isAutoRepeat() || opensMenu(button))
        return;
    // A click gives it the focus, too.
    if (button->focusPolicy() & Qt::ClickFocus)
        m_focus.enter(target);
    m_lastKey = m_report.add(QStringLiteral("click"), target);
}

void KeyActions::menuKey()
{
    QWidget *target = keyTarget();
    if (!target || QApplication::activePopupWidget() || sceneRootOf(target))
        return;
    typeKeys(target, QStringLiteral("<Menu>"), false);
    m_isMenuKeyKnown = true;
}

void KeyActions::pressInMenu(QMenu *menu, const QKeyEvent &event)
{
    // One that another menu has opened is not open in the script.
    if (event.key() == Qt::Key_Escape && m_menus.openFor(menu) == menu)
        m_report.add(QStringLiteral("type"), m_menus.nameOf(menu), menu,
                     {{QStringLiteral("text"), QStringLiteral("<Esc>")}});
    if (event.modifiers() & (Qt::ControlModifier | Qt::MetaModifier))
        return;
    auto *action = const_cast<QAction *>(actionFor(menu, event.key()));
    if (!action || !action->isEnabled() || action->isSeparator() || action->menu())
        return;
    const MenuPath path = menuPathOf(menu, action, m_menus.openFor(menu));
    // The date says which month was chosen.
    if (dateOfCalendar(path.owner))
        return;
    m_menus.choose(path);
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
    if (isSecretInput(target)) {
        m_focus.enter(target);
        if (!m_secrets.mayShow(target, event))
            return;
        m_lastKey = m_typed.add(target, keys);
    } else {
        const bool isText = !keys.startsWith(QLatin1Char('<')) || keys == QLatin1String("<<");
        if (isText && isReadOnly(target))
            return;
        const bool isCommit = isTabKey(event) || (isChoiceKey(event) && !hasLines(target));
        if (isCommit && m_edits.commit())
            return;
        if (event.key() == Qt::Key_Escape)
            m_edits.expectCancel();
        typeKeys(target, keys,
                 isText || event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete);
        if (isText)
            m_search.begin(target, keys, m_lastKey);
        if (!isTabKey(event) && !isCursorKey(event))
            m_edits.typeInView(target, m_lastKey, isText);
    }
    // Where a list is open it closes that, too.
    if (isTabKey(event) && !QApplication::activePopupWidget())
        m_focus.expect(m_lastKey);
}

// What the user has found selected when the focus came.
void KeyActions::selectAsShown(QWidget *target, bool isReplacing)
{
    const TextCursorState state = TextCursorState::of(target);
    if (state.isInLaterSection() || (isReplacing && state.isAllSelected()))
        m_report.addCursor(m_report.nameOf(target), target, state.keys());
}

void KeyActions::typeKeys(QWidget *target, const QString &keys, bool isReplacing)
{
    m_hasTakenMove = m_focus.enter(target);
    m_edits.beginKey(target, isReplacing);
    if (m_focus.takeNew() && !editedView(target))
        selectAsShown(target, isReplacing);
    // Where the cursor was no longer matters.
    if (fieldOf(target) && keys == selectAll) {
        m_report.addCursor(m_report.nameOf(target), target, keys);
        m_lastKey = m_report.lastNumber();
    } else {
        m_lastKey = m_typed.add(target, keys);
    }
    m_edits.noteTyped(target, m_lastKey);
    if (const QLineEdit *field = isReplacing ? choosyField(target) : nullptr)
        m_offer = {field, field->text(), TextCursorState::of(field), m_lastKey};
}

void KeyActions::shortcut(QObject *owner, const QShortcutEvent &event)
{
    m_search.cancel();
    const QString heldBack = m_secrets.takeShortcut();
    // The one of several actions is not chosen.
    if (qobject_cast<QMenuBar *>(owner) ||
        (event.isAmbiguous() && qobject_cast<QAction *>(owner))) {
        m_report.cancel(m_lastKey);
        return;
    }
    reportShortcut(event.key(), !heldBack.isEmpty());
    m_edits.beginAction(m_lastKey - 1);
    m_edits.noteShortcut(m_lastKey, m_pressedKeys);
    const auto *group = qobject_cast<QGroupBox *>(owner);
    const bool isChecked = group && group->isCheckable();
    if (qobject_cast<QLabel *>(owner) || (event.isAmbiguous() && owner->isWidgetType()) ||
        (group && !isChecked))
        m_focus.expect(m_lastKey);
    else if (qobject_cast<QAbstractButton *>(owner) || isChecked)
        replaceByClick(owner, {});
    else if (auto *tabs = qobject_cast<QTabBar *>(owner))
        replaceByTab(tabs, event.key());
    else if (isOfWindow(owner) && m_pressedIn && !isTypedInto(m_pressedIn) && !m_hasTakenMove)
        m_report.replace(m_lastKey, QStringLiteral("type"), m_pressedIn->window(),
                         {{QStringLiteral("text"), m_pressedKeys}});
}

// Of several keys only the first is offered.
void KeyActions::reportShortcut(const QKeySequence &key, bool isHeldBack)
{
    const QString pressed = std::exchange(m_pressedKeys, shortcutKeysOf(key, m_pressedKeys));
    QWidget *target = m_pressedIn ? m_pressedIn.data() : keyTarget();
    const QVariantMap more{{QStringLiteral("text"), m_pressedKeys}};
    const bool isMissing = m_lastKey == 0 && (key.count() > 1 || !isSecretInput(target));
    if (isMissing || isHeldBack)
        m_lastKey = m_report.add(QStringLiteral("type"), target, more);
    else if (m_pressedKeys != pressed)
        m_report.replace(m_lastKey, QStringLiteral("type"), target, more);
}

void KeyActions::replaceByTab(QTabBar *tabs, const QKeySequence &key)
{
    for (int i = 0; i < tabs->count(); ++i) {
        if (QKeySequence::mnemonic(tabs->tabText(i)) == key && tabs->isTabEnabled(i))
            replaceByClick(tabsOf(tabs), {{QStringLiteral("item"), selectorOf(tabs, i)}});
    }
}

void KeyActions::replaceByClick(const QObject *object, const QVariantMap &more)
{
    m_report.replace(m_lastKey, QStringLiteral("click"), object, more);
    m_edits.forgetShortcut(m_lastKey);
}

void KeyActions::inputMethod(QObject *receiver, const QInputMethodEvent &event)
{
    auto *target = qobject_cast<QWidget *>(receiver);
    while (target && target->focusProxy())
        target = target->focusProxy();
    if (!target || event.commitString().isEmpty())
        return;
    m_menus.enter(target);
    if (!isSecretInput(target))
        return typeKeys(target, typedTextOf(event.commitString()), true);
    m_focus.enter(target);
    m_secrets.addText(target);
}

void KeyActions::settle()
{
    const bool isRefused = m_offer.field && m_offer.field->text() == m_offer.text &&
                           TextCursorState::of(m_offer.field) == m_offer.cursor;
    if (isRefused)
        m_report.cancel(m_offer.number);
    m_offer = {};
    m_secrets.settle();
    m_edits.settle();
    m_search.settle();
    if (m_choice.list && m_choice.list->isVisible())
        m_report.cancel(m_choice.number);
    m_choice = {};
}

} // namespace Morvex
