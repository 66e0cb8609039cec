#include "qtbackend/standardtypes.h"

#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QAction>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialog>
#include <QDockWidget>
#include <QGroupBox>
#include <QHeaderView>
#include <QLCDNumber>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QSplitter>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTextEdit>
#include <QToolBar>
#include <QToolBox>
#include <QTreeView>

namespace Morvex {
namespace {

// Derived classes before those that they derive from.
const struct
{
    const QMetaObject *metaObject;
    const char *name;
} types[] = {
    {&QMenu::staticMetaObject, "menu"},
    {&QMenuBar::staticMetaObject, "menubar"},
    {&QAction::staticMetaObject, "menuitem"},
    {&QDialog::staticMetaObject, "dialog"},
    {&QMdiSubWindow::staticMetaObject, "window"},
    {&QDockWidget::staticMetaObject, "dockwindow"},
    {&QCheckBox::staticMetaObject, "checkbox"},
    {&QRadioButton::staticMetaObject, "radiobutton"},
    {&QAbstractButton::staticMetaObject, "button"},
    {&QLineEdit::staticMetaObject, "textfield"},
    {&QTextEdit::staticMetaObject, "textarea"},
    {&QPlainTextEdit::staticMetaObject, "textarea"},
    {&QLabel::staticMetaObject, "label"},
    {&QLCDNumber::staticMetaObject, "label"},
    {&QComboBox::staticMetaObject, "combobox"},
    {&QDateTimeEdit::staticMetaObject, "datefield"},
    {&QAbstractSpinBox::staticMetaObject, "spinbox"},
    {&QCalendarWidget::staticMetaObject, "calendar"},
    {&QScrollBar::staticMetaObject, "scrollbar"},
    {&QAbstractSlider::staticMetaObject, "slider"},
    {&QProgressBar::staticMetaObject, "progressbar"},
    {&QHeaderView::staticMetaObject, "header"},
    {&QTreeView::staticMetaObject, "tree"},
    {&QListView::staticMetaObject, "list"},
    {&QAbstractItemView::staticMetaObject, "table"},
    {&QTabWidget::staticMetaObject, "tabs"},
    {&QTabBar::staticMetaObject, "tabbar"},
    {&QToolBox::staticMetaObject, "tabs"},
    {&QGroupBox::staticMetaObject, "group"},
    {&QToolBar::staticMetaObject, "toolbar"},
    {&QStatusBar::staticMetaObject, "statusbar"},
    {&QSplitter::staticMetaObject, "splitter"},
    {&QScrollArea::staticMetaObject, "scrollarea"},
};

} // namespace

UIAbstraction::StandardType standardTypeOf(const QObject *object)
{
    for (const auto &type : types) {
        if (object->metaObject()->inherits(type.metaObject))
            return UIAbstraction::StandardType(QLatin1String(type.name));
    }
    const bool isWindow =
        object->isWidgetType() && static_cast<const QWidget *>(object)->isWindow();
    return isWindow ? UIAbstraction::StandardType(QStringLiteral("window"))
                    : UIAbstraction::StandardType();
}

bool isViewport(const QWidget *widget)
{
    const auto *area = qobject_cast<const QAbstractScrollArea *>(widget->parentWidget());
    return area && area->viewport() == widget;
}

} // namespace Morvex
