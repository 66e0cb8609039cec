#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

#include <vector>

namespace Morvex {

class ActionReport;

/// What the user makes of an item in a view, as one action that stands for all that was done in
/// the editor of the item.
class CellEdits
{
public:
    explicit CellEdits(ActionReport &report)
        : m_report(report)
    {
    }

    /// A key was reported that may open the editor of an item; whether as its first text.
    void typeInView(const QWidget *target, int number, bool isText);
    /// Something is typed that belongs to the content of this editor.
    void typeInEditor(QWidget *target);
    /// It was reported so.
    void noteTyped(const QWidget *target, int number);
    /// Reports the edit when there is one, before it is handed over.
    bool commit();
    /// The editor is left without what was done in it.
    void expectCancel() { m_isCancelled = m_editor != nullptr; }
    /// The focus has left the widget, which has not seen that yet.
    void focusOut(const QObject *widget);

    /// Looks whether an editor was opened.
    void settle();

private:
    void cancel();

    ActionReport &m_report;
    QPointer<QWidget> m_editor;
    QString m_textBefore;
    bool m_isTypedInto = false;
    bool m_isCancelled = false;
    // Of the key that has opened the editor; 0 for none.
    int m_opener = 0;
    // Whether a script that repeats what was done before has it open, too.
    bool m_isOpenForScripts = false;
    std::vector<int> m_typed;
    int m_lastEdit = 0;
    // The key that may open one.
    QPointer<const QWidget> m_view;
    int m_key = 0;
    bool m_isKeyText = false;
};

} // namespace Morvex
