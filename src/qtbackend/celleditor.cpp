#include "qtbackend/celleditor.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QMetaProperty>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTextEdit>

namespace Morvex {
namespace {

// Protected members of the toolkit's classes.
struct ViewAccess : QAbstractItemView
{
    static bool isEditing(const QAbstractItemView *view)
    {
        return (view->*(&ViewAccess::state))() == EditingState;
    }
};

struct DateAccess : QDateTimeEdit
{
    static QDateTime read(const QDateTimeEdit *edit, const QString &text)
    {
        return (edit->*(&DateAccess::dateTimeFromText))(text);
    }
};

bool isKnown(const QWidget *editor)
{
    return qobject_cast<const QLineEdit *>(editor) ||
           qobject_cast<const QAbstractSpinBox *>(editor) ||
           qobject_cast<const QComboBox *>(editor) || hasLines(editor);
}

} // namespace

bool isEditing(const QAbstractItemView *view)
{
    return ViewAccess::isEditing(view);
}

QAbstractItemView *viewOfEditor(const QWidget *widget)
{
    const QWidget *viewport = widget ? widget->parentWidget() : nullptr;
    auto *view = qobject_cast<QAbstractItemView *>(viewport ? viewport->parentWidget() : nullptr);
    return view && view->viewport() == viewport && ViewAccess::isEditing(view) &&
                   editedIndex(view, widget).isValid()
               ? view
               : nullptr;
}

bool isEditedIn(const QWidget *widget, const QWidget *viewport)
{
    while (widget->parentWidget() != viewport)
        widget = widget->parentWidget();
    return viewOfEditor(widget);
}

QAbstractItemView *editedView(const QWidget *editor)
{
    return editor && isKnown(editor) ? viewOfEditor(editor) : nullptr;
}

// The application may have opened that of another item than the current one.
QModelIndex editedIndex(const QAbstractItemView *view, const QWidget *editor)
{
    for (const QModelIndex &index :
         {view->currentIndex(), view->indexAt(editor->geometry().center())}) {
        if (index.isValid() && view->indexWidget(index) == editor)
            return index;
    }
    return {};
}

bool hasLines(const QWidget *editor)
{
    return qobject_cast<const QTextEdit *>(editor) || qobject_cast<const QPlainTextEdit *>(editor);
}

QString editorText(const QWidget *editor)
{
    if (hasLines(editor))
        return editor->property("plainText").toString();
    if (const auto *box = qobject_cast<const QComboBox *>(editor))
        return box->currentText();
    if (const auto *line = qobject_cast<const QLineEdit *>(editor))
        return line->text();
    if (const auto *spin = qobject_cast<const QSpinBox *>(editor))
        return spin->cleanText();
    if (const auto *spin = qobject_cast<const QDoubleSpinBox *>(editor))
        return spin->cleanText();
    return editor->metaObject()->userProperty().read(editor).toString();
}

bool isGivenValue(const QWidget *editor)
{
    if (const auto *box = qobject_cast<const QComboBox *>(editor))
        return !box->isEditable();
    return qobject_cast<const QDateTimeEdit *>(editor);
}

QString giveValue(QWidget *editor, const QString &text)
{
    if (auto *box = qobject_cast<QComboBox *>(editor)) {
        const int index = box->findText(text);
        box->setCurrentIndex(index);
        return index < 0 ? QStringLiteral("the editor has no item '%1'").arg(text) : QString();
    }
    auto *edit = qobject_cast<QDateTimeEdit *>(editor);
    const QMetaProperty property = editor->metaObject()->userProperty();
    QVariant value(text);
    const bool isValue = value.convert(property.userType());
    if (isValue)
        property.write(editor, value);
    else if (edit)
        edit->setDateTime(DateAccess::read(edit, text));
    const bool isTaken = isValue ? property.read(editor) == value : edit && edit->text() == text;
    return isTaken ? QString() : QStringLiteral("the editor doesn't take '%1'").arg(text);
}

} // namespace Morvex
