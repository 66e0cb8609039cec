#include "qtbackend/celledits.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/celleditor.h"
#include "qtbackend/itemselectors.h"
#include "qtbackend/recordedkeys.h"

#include <QAbstractItemView>
#include <QApplication>

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
    m_edited = editedIndex(view, editor);
    m_lastEdit = m_report.add(QStringLiteral("edit"), view,
                              {{QStringLiteral("item"), selectorOf(view, m_edited)},
                               {QStringLiteral("text"), editorText(editor)},
                               {QStringLiteral("editor"), m_report.nameOf(editor)}});
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
        m_typed.clear();
    }
    m_view = nullptr;
}

} // namespace Morvex
