#include "qtbackend/celledits.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/celleditor.h"
#include "qtbackend/itemselectors.h"
#include "qtbackend/recordedkeys.h"

#include <QAbstractItemView>
#include <QApplication>

#include <algorithm>
#include <utility>

namespace Morvex {
namespace {

// Also in a popup of it.
bool hasFocusWithin(const QWidget *editor)
{
    const QWidget *widget = editor->isActiveWindow() ? QApplication::focusWidget() : nullptr;
    while (widget && widget != editor)
        widget = widget->parentWidget();
    return widget;
}

} // namespace

void CellEdits::typeInView(const QWidget *target, int number, bool isText)
{
    m_view = target;
    m_key = number;
    m_isKeyText = isText;
}

void CellEdits::beginKey(QWidget *target, bool isChange)
{
    if (editedView(target) && !isSecretInput(target))
        typeInEditor(target, isChange);
    auto *view = qobject_cast<QAbstractItemView *>(target);
    const bool isAfterEdit = view && m_edited.isValid() && m_edited.model() == view->model() &&
                             m_lastEdit == m_report.lastNumber();
    if (!isAfterEdit || view->currentIndex() == m_edited || !view->currentIndex().isValid())
        return;
    // The key that ended the edit has chosen another one.
    m_report.add(QStringLiteral("click"), view,
                 {{QStringLiteral("item"), selectorOf(view, view->currentIndex())}});
}

void CellEdits::typeInEditor(QWidget *target, bool isChange)
{
    if (m_editor != target) {
        m_opener = 0;
        m_isOpenForScripts = true;
        m_isTypedInto = false;
        m_typed.clear();
        m_shortcuts.clear();
        m_since = m_report.lastNumber();
        m_textBefore = editorText(target);
    }
    m_editor = target;
    m_isTypedInto = m_isTypedInto || isChange;
}

void CellEdits::noteTyped(const QWidget *target, int number)
{
    if (target == m_editor)
        m_typed.push_back(number);
}

void CellEdits::noteShortcut(int number, const QString &keys)
{
    const auto key = std::find(m_typed.begin(), m_typed.end(), number);
    if (key == m_typed.end())
        return;
    m_typed.erase(key);
    m_shortcuts.push_back({number, keys});
    if (!m_isOpenForScripts)
        giveShortcutsTo(editedView(m_editor));
}

void CellEdits::forgetShortcut(int number)
{
    if (!m_shortcuts.empty() && m_shortcuts.back().number == number)
        m_shortcuts.pop_back();
}

// A script that edits the item by one call has no editor open.
void CellEdits::giveShortcutsTo(QWidget *view)
{
    for (const Shortcut &shortcut : m_shortcuts)
        m_report.replace(shortcut.number, QStringLiteral("type"), view,
                         {{QStringLiteral("text"), shortcut.keys}});
    m_shortcuts.clear();
}

// What is done after the edit in a script, as it has taken the focus from the editor, or nothing
// can be edited afterwards. 0 for none.
int CellEdits::actionThatCommits(const QWidget *view) const
{
    const QWidget *dialog = QApplication::activeModalWidget();
    const bool isBlocked = dialog && dialog != view->window() && !dialog->isAncestorOf(view);
    const int last = m_report.lastNumber();
    const bool isPart = std::find(m_typed.begin(), m_typed.end(), last) != m_typed.end();
    return !isPart && (isBlocked || last > m_numberBefore) ? last : 0;
}

bool CellEdits::commit()
{
    QWidget *editor = m_editor;
    QAbstractItemView *view = editedView(editor);
    const bool isUsed = std::exchange(m_isTypedInto, false);
    const bool isEdit = view && (isUsed || editorText(editor) != m_textBefore);
    if (view && !isEdit && !m_isOpenForScripts) {
        cancel();
        return true;
    }
    m_editor = nullptr;
    if (!isEdit)
        return false;
    m_report.cancel(std::exchange(m_opener, 0));
    giveShortcutsTo(view);
    m_edited = editedIndex(view, editor);
    QVariantMap more{{QStringLiteral("item"), selectorOf(view, m_edited)},
                     {QStringLiteral("text"), editorText(editor)},
                     {QStringLiteral("editor"), m_report.nameOf(editor)},
                     {QStringLiteral("since"), m_since}};
    if (const int cause = actionThatCommits(view))
        more[QStringLiteral("before")] = cause;
    m_lastEdit = m_report.add(QStringLiteral("edit"), view, more);
    return true;
}

void CellEdits::focusOut(const QObject *widget)
{
    if (m_editor && widget == m_editor && !m_isCancelled && !hasFocusWithin(m_editor))
        commit();
}

// Nothing has come of all that was typed.
void CellEdits::cancel()
{
    const std::size_t kept = m_isOpenForScripts ? 1 : 0;
    for (std::size_t i = 0; i + kept < m_typed.size(); ++i)
        m_report.cancel(m_typed[i]);
    m_report.cancel(std::exchange(m_opener, 0));
    // As if the edit before were the last action.
    if (!m_typed.empty() && m_typed.front() == m_lastEdit + 1)
        m_lastEdit = m_report.lastNumber();
    m_editor = nullptr;
    m_typed.clear();
}

void CellEdits::settle()
{
    m_numberBefore = noAction;
    if (std::exchange(m_isCancelled, false) && !editedView(m_editor))
        cancel();
    QWidget *focus = QApplication::focusWidget();
    const QAbstractItemView *view = editedView(focus);
    const bool isNew = view && focus != m_editor && !isSecretInput(focus);
    if (isNew) {
        const bool isByKey = m_view == view && m_key == m_report.lastNumber();
        m_editor = focus;
        m_textBefore = editorText(focus);
        m_opener = isByKey ? m_key : 0;
        m_isTypedInto = isByKey && m_isKeyText;
        m_isOpenForScripts = !isByKey && m_lastEdit != m_report.lastNumber();
        m_since = m_report.lastNumber();
        m_typed.clear();
        m_shortcuts.clear();
    }
    m_view = nullptr;
}

} // namespace Morvex
