#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

class QKeyEvent;

namespace Morvex {

class ActionReport;

/// What is typed into a field whose text is a secret: one action that says that it was filled,
/// whatever the user typed, corrected and pasted.
class SecretTyping
{
public:
    explicit SecretTyping(ActionReport &report)
        : m_report(report)
    {
    }

    /// A key for the field, before it is delivered. Whether it may be seen, as no part of the
    /// secret.
    bool mayShow(QWidget *field, const QKeyEvent &event);
    /// A text for the field that no key has, before it is delivered.
    void addText(QWidget *field);
    /// The key that was last for the field has come to a shortcut, and was no part of the secret.
    /// Returns it, or an empty text.
    QString takeShortcut();

    /// Looks what has become of the field.
    void settle();

private:
    void begin(QWidget *field, bool isInsertion);
    void report(bool isEmptied);

    ActionReport &m_report;
    QPointer<QWidget> m_field;
    // When it was used first, and before what is delivered now.
    QString m_first;
    QString m_before;
    bool m_hasChanged = false;
    bool m_isPending = false;
    bool m_isInsertion = false;
    bool m_isEmptied = false;
    QString m_heldBack;
    // Of the action, as long as nothing else was done.
    int m_number = 0;
};

} // namespace Morvex
