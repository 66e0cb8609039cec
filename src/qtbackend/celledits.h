#pragma once

#include <QPersistentModelIndex>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <limits>
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
    /// A key is going to be reported for the widget; whether it changes a text.
    void beginKey(QWidget *target, bool isChange);
    /// It was reported so.
    void noteTyped(const QWidget *target, int number);
    /// What was typed was no text: a shortcut had that key, or the keys that begin with it.
    void noteShortcut(int number, const QString &keys);
    /// That which was noted last is no longer reported as keys.
    void forgetShortcut(int number);
    /// Something is going to be done by actions after that of this number.
    void beginAction(int numberBefore) { m_numberBefore = numberBefore; }
    /// Reports the edit when there is one, before it is handed over. Whether that is all that a
    /// script needs.
    bool commit();
    /// The editor is left without what was done in it.
    void expectCancel() { m_isCancelled = m_editor != nullptr; }
    /// The focus has left the widget, which has not seen that yet.
    void focusOut(const QObject *widget);

    /// Looks whether an editor was opened.
    void settle();

private:
    struct Shortcut
    {
        int number = 0;
        QString keys;
    };

    int actionThatCommits(const QWidget *view) const;
    void giveShortcutsTo(QWidget *view);
    void typeInEditor(QWidget *target, bool isChange);
    void cancel();

    static constexpr int noAction = std::numeric_limits<int>::max();

    ActionReport &m_report;
    QPointer<QWidget> m_editor;
    QString m_textBefore;
    bool m_isTypedInto = false;
    bool m_isCancelled = false;
    // That of the last action before it was opened, or of the one that has opened it.
    int m_since = 0;
    // Of the key that has opened the editor; 0 for none.
    int m_opener = 0;
    // Whether a script that repeats what was done before has it open, too.
    bool m_isOpenForScripts = false;
    std::vector<int> m_typed;
    std::vector<Shortcut> m_shortcuts;
    int m_numberBefore = noAction;
    // The item is the current one when a script has edited it.
    QPersistentModelIndex m_edited;
    int m_lastEdit = 0;
    // The key that may open one.
    QPointer<const QWidget> m_view;
    int m_key = 0;
    bool m_isKeyText = false;
};

} // namespace Morvex
