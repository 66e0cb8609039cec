#include "qtbackend/scenekeys.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/recordedkeys.h"
#include "qtbackend/reportedplace.h"
#include "qtbackend/sceneaccess.h"
#include "qtbackend/scenemenus.h"
#include "qtbackend/scenetarget.h"
#include "qtbackend/sceneview.h"
#include "qtbackend/secretinputs.h"

#include <QKeyEvent>
#include <QKeySequence>
#include <QShortcutEvent>

#include <utility>

namespace Morvex {
namespace {

QObject *focusIn(const QObject *root)
{
    const SceneAccess &access = *SceneAccess::self();
    return root ? access.focusIn(access.windowOf(root)) : nullptr;
}

// The one that was opened last; null when there is none.
QObject *popupIn(const QObject *root)
{
    const QObjectList popups = SceneAccess::self()->popupsIn(root);
    return popups.isEmpty() ? nullptr : popups.last();
}

QObject *boxOf(const QObject *popup)
{
    QObject *owner = popup ? popup->property("parent").value<QObject *>() : nullptr;
    return isSceneComboBox(owner) ? owner : nullptr;
}

// By the pointer or keys; null for none.
QObject *currentEntryOf(const QObject *menu)
{
    const int index = menu->property("currentIndex").toInt();
    QObject *list = menu->property("contentItem").value<QObject *>();
    for (QObject *entry : list &&index >= 0 ? delegatesOf(list) : QObjectList()) {
        if (sceneRowNumber(list, entry) == index)
            return entry;
    }
    return nullptr;
}

// A view gives the keys to its current row.
QObject *viewWithKeys(QObject *item)
{
    const SceneRow row = sceneRowOf(item);
    const bool isCurrent = row.owner && row.delegate == item && !isSceneText(item) &&
                           row.owner->property("currentItem").value<QObject *>() == item;
    return isCurrent ? row.owner : item;
}

// A window, with what has no name in it, leaves the focus where it is.
QObject *typedInto(QObject *root, QObject *focus)
{
    QObject *owner = focus ? sceneOwnerOf(focus) : nullptr;
    const bool isMeant = owner && !owner->inherits("QQuickContentItem") &&
                         (isSceneText(owner) || !owner->objectName().isEmpty() ||
                          owner->inherits("QQuickItemView") ||
                          (owner->inherits("QQuickControl") && !owner->inherits("QQuickPane")));
    return isMeant ? viewWithKeys(owner) : sceneWindowOf(root);
}

// A dialog that does not take the focus leaves the keys to what it covers.
bool isPushed(const QObject *focus)
{
    return focus && (focus->inherits("QQuickAbstractButton") || isSceneComboBox(focus)) &&
           !SceneAccess::self()->coverOf(focus,
                                         SceneAccess::self()->visiblePlaceOf(focus).center());
}

// What the program has made of items may do more with a key that moves the focus.
bool isField(const QObject *item)
{
    return isSceneText(item) || (item && item->inherits("QQuickControl"));
}

bool isAllSelected(const QObject *item)
{
    const QString selected = item ? item->property("selectedText").toString() : QString();
    return !selected.isEmpty() && selected.size() == item->property("length").toInt();
}

} // namespace

void SceneKeys::beginPress(QObject *root)
{
    m_press = {root, focusIn(root), m_report.lastNumber()};
}

void SceneKeys::press(QObject *root, const QKeyEvent &event)
{
    m_choice = {};
    m_pressed = {};
    QObject *focus = focusIn(root);
    QObject *popup = popupIn(root);
    if (QObject *box = boxOf(popup))
        typeInComboBox(box, popup, event);
    else if (popup && popup->inherits("QQuickMenu"))
        typeInMenu(root, popup, event);
    else if (isPushKey(event) && isPushed(focus))
        push(focus, event);
    else
        type(root, focus, event);
}

void SceneKeys::push(QObject *focus, const QKeyEvent &event)
{
    if (event.isAutoRepeat())
        return;
    m_pressed.keys = typedKeyOf(event);
    if (!isSceneComboBox(focus)) {
        dropLastTab();
        const RecordedTarget target = sceneItemTarget(focus);
        m_pressed.push =
            m_report.add(QStringLiteral("click"), target.object, reportedPlace(target));
    }
}

// Most entries are chosen by it.
void SceneKeys::release()
{
    m_choice.isReleased = true;
}

void SceneKeys::typeInComboBox(QObject *box, QObject *popup, const QKeyEvent &event)
{
    const int row = box->property("highlightedIndex").toInt();
    const bool isChoice = isChoiceKey(event) || isPushKey(event);
    if (!isChoice || row < 0 || event.isAutoRepeat())
        return;
    m_choice.popup = popup;
    m_choice.number = m_report.add(QStringLiteral("click"), box,
                                   {{QStringLiteral("item"), sceneEntrySelector(box, row)}});
}

void SceneKeys::typeInMenu(QObject *root, QObject *menu, const QKeyEvent &event)
{
    QObject *entry = currentEntryOf(menu);
    const bool hasMenu = entry && entry->property("subMenu").value<QObject *>();
    const bool isChoice = isChoiceKey(event) || isPushKey(event);
    if (entry && (isChoice || (hasMenu && event.key() == Qt::Key_Right))) {
        m_menus.reportOpeners(entry);
        m_choice.number = m_report.add(QStringLiteral("click"), entry);
        m_choice.popup = hasMenu ? nullptr : menu;
        return;
    }
    const QString keys = typedKeyOf(event);
    if (!keys.isEmpty() && event.key() != Qt::Key_Up && event.key() != Qt::Key_Down)
        m_pressed = {sceneWindowOf(root), keys, m_typed.add(sceneWindowOf(root), keys), 0};
}

// What is done next in the same window leaves the field as well.
void SceneKeys::dropLastTab()
{
    if (m_lastTab == m_report.lastNumber())
        m_report.cancel(m_lastTab);
    m_lastTab = 0;
}

void SceneKeys::type(QObject *root, QObject *focus, const QKeyEvent &event)
{
    const QString keys = typedKeyOf(event);
    if (keys.isEmpty())
        return;
    dropLastTab();
    QObject *target = typedInto(root, focus);
    m_pressed = {target, keys, 0, 0};
    m_heldBack.clear();
    if (isSceneText(focus))
        noteSecretInput(focus);
    if (isSecretInput(focus) && !mayShow(target, event, keys))
        return;
    const bool isText = !keys.startsWith(QLatin1Char('<')) || keys == QLatin1String("<<");
    if (isText && focus && focus->property("readOnly").toBool())
        return;
    if (std::exchange(m_hasMovedFocus, false) &&
        (isText || event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete))
        selectAllAsShown(target, focus);
    m_pressed.number = m_typed.add(target, keys);
    if (isTabKey(event))
        m_tab = {root, focus, m_pressed.number};
}

// Of what changes the secret it is said that it was changed; of what may be a shortcut only once it
// has come to that.
bool SceneKeys::mayShow(QObject *field, const QKeyEvent &event, const QString &keys)
{
    const SecretKey kind = secretKeyOf(event);
    if (kind == SecretKey::Text || kind == SecretKey::Inserting || kind == SecretKey::Deleting)
        m_typed.addSecret(field);
    else if (kind == SecretKey::Command)
        m_heldBack = keys;
    return kind == SecretKey::Shown;
}

void SceneKeys::selectAllAsShown(QObject *target, QObject *focus)
{
    if (isAllSelected(focus))
        m_typed.add(target, QStringLiteral("<Ctrl+A>"));
}

void SceneKeys::shortcut(QObject *root, const QShortcutEvent &event)
{
    const QString heldBack = std::exchange(m_heldBack, {});
    if (event.key().isEmpty())
        return;
    // Of several keys only the first is offered.
    const QString keys = shortcutKeysOf(event.key(), m_pressed.keys);
    const bool isMissing =
        m_pressed.number == 0 && (event.key().count() > 1 || !isSecretInput(focusIn(root)));
    m_report.cancel(std::exchange(m_pressed.push, 0));
    if (isMissing || !heldBack.isEmpty())
        m_typed.add(typedInto(root, focusIn(root)), keys);
    else if (m_pressed.number > 0 && keys != m_pressed.keys)
        m_report.replace(m_pressed.number, QStringLiteral("type"), m_pressed.target,
                         {{QStringLiteral("text"), keys}});
}

void SceneKeys::inputMethod(QObject *item, const QInputMethodEvent &event)
{
    if (event.commitString().isEmpty())
        return;
    if (isSecretInput(item))
        m_typed.addSecret(sceneOwnerOf(item));
    else
        m_typed.add(sceneOwnerOf(item), typedTextOf(event.commitString()));
}

void SceneKeys::settle()
{
    if (m_tab.number > 0 && m_tab.focus != focusIn(m_tab.root)) {
        m_lastTab = isField(m_tab.focus) ? m_tab.number : 0;
        m_hasMovedFocus = true;
    }
    m_tab = {};
    if (m_lastTab > 0 && m_lastTab == m_press.number && m_press.focus != focusIn(m_press.root))
        m_report.cancel(std::exchange(m_lastTab, 0));
    m_press = {};
    if (!m_choice.isReleased)
        return;
    if (m_choice.popup && m_choice.popup->property("opened").toBool())
        m_report.cancel(m_choice.number);
    m_choice = {};
}

} // namespace Morvex
