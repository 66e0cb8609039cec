#include "qtbackend/recordedtarget.h"

#include "qtbackend/items.h"
#include "qtbackend/itemselectors.h"
#include "qtbackend/links.h"
#include "qtbackend/menubutton.h"
#include "qtbackend/ownclass.h"
#include "qtbackend/toolbarextension.h"
#include "qtbackend/widgetvalue.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QClipboard>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialog>
#include <QDockWidget>
#include <QGroupBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QSizeGrip>
#include <QSplitter>
#include <QStatusBar>
#include <QStyleOption>
#include <QStylePainter>
#include <QTabBar>
#include <QTabWidget>
#include <QTextBrowser>
#include <QToolBar>
#include <QTreeView>

#include <initializer_list>

namespace Morvex {
namespace {

// Protected members of the toolkit's classes.
struct ButtonAccess : QAbstractButton
{
    static bool isHit(const QAbstractButton *button, const QPoint &place)
    {
        return (button->*(&ButtonAccess::hitButton))(place);
    }
};

struct GroupAccess : QGroupBox
{
    static QStyleOptionGroupBox optionOf(const QGroupBox *box)
    {
        QStyleOptionGroupBox option;
        (box->*(&GroupAccess::initStyleOption))(&option);
        return option;
    }
};

bool inheritsOneOf(const QWidget *widget, std::initializer_list<const QMetaObject *> types)
{
    return std::any_of(types.begin(), types.end(), [widget](const QMetaObject *type) {
        return widget->metaObject()->inherits(type);
    });
}

bool isPassive(const QWidget *widget)
{
    return inheritsOneOf(widget, {&QMenu::staticMetaObject, &QMenuBar::staticMetaObject,
                                  &QScrollBar::staticMetaObject, &QSplitterHandle::staticMetaObject,
                                  &QSizeGrip::staticMetaObject, &QDockWidget::staticMetaObject,
                                  &QMdiSubWindow::staticMetaObject, &QToolBar::staticMetaObject,
                                  &QScrollArea::staticMetaObject, &QStatusBar::staticMetaObject,
                                  &QTabWidget::staticMetaObject, &QMainWindow::staticMetaObject,
                                  &QDialog::staticMetaObject});
}

bool isText(const QWidget *widget)
{
    return inheritsOneOf(widget, {&QLineEdit::staticMetaObject, &QTextEdit::staticMetaObject,
                                  &QPlainTextEdit::staticMetaObject});
}

RecordedTarget itemTarget(QWidget *owner, const QVariantList &selector)
{
    RecordedTarget target;
    target.kind = selector.isEmpty() ? RecordedTarget::Nothing : RecordedTarget::Click;
    target.object = owner;
    target.item = selector;
    return target;
}

RecordedTarget placeTarget(QWidget *owner, const QPoint &place)
{
    RecordedTarget target;
    target.kind = RecordedTarget::Click;
    target.object = owner;
    target.place = place;
    return target;
}

RecordedTarget targetOf(RecordedTarget::Kind kind, QWidget *owner)
{
    RecordedTarget target;
    target.kind = kind;
    target.object = owner;
    return target;
}

bool isOnHandle(const QTreeView *tree, const QModelIndex &index, const QPoint &place)
{
    const bool isIndented = tree->rootIsDecorated() || index.parent() != tree->rootIndex();
    if (!tree->itemsExpandable() || !isIndented || index.column() != 0 ||
        !tree->model()->hasChildren(index))
        return false;
    const QRect shown = tree->visualRect(index);
    const int beside = tree->isRightToLeft() ? place.x() - shown.right() : shown.left() - place.x();
    return beside > 0 && beside <= tree->indentation();
}

// Of what an application draws and handles itself, such as a row of stars.
void addPlaceInItem(RecordedTarget *target, const QAbstractItemView &view, const QModelIndex &index,
                    const QPoint &place)
{
    const QRect shown = view.visualRect(index);
    if (target->kind == RecordedTarget::Click && !target->item.isEmpty() && shown.contains(place) &&
        handlesMouse(view.itemDelegate(index)))
        target->place = place - shown.topLeft();
}

// Beside its items. There the left button takes back a selection, or begins a rubber band.
RecordedTarget freeTarget(QAbstractItemView *view, const QPoint &place, Qt::MouseButton button)
{
    const bool hasSelection = view->selectionModel() && view->selectionModel()->hasSelection();
    const bool isMultiple = view->selectionMode() != QAbstractItemView::NoSelection &&
                            view->selectionMode() != QAbstractItemView::SingleSelection;
    if (button == Qt::LeftButton && !hasSelection && !isMultiple)
        return {};
    RecordedTarget target =
        isMiddleFree(view) ? targetOf(RecordedTarget::Click, view) : placeTarget(view, place);
    target.isForDrag = button == Qt::LeftButton && !hasSelection;
    return target;
}

RecordedTarget viewTarget(QAbstractItemView *view, const QPoint &place, Qt::MouseButton button)
{
    if (comboBoxOfList(view))
        return {};
    const QModelIndex index = view->model() ? view->indexAt(place) : QModelIndex();
    if (!index.isValid())
        return freeTarget(view, place, button);
    RecordedTarget target = itemTarget(view, selectorOf(view, index));
    const auto *tree = qobject_cast<QTreeView *>(view);
    const bool isLeft = button == Qt::LeftButton;
    if (isLeft && tree && !target.item.isEmpty() && isOnHandle(tree, index, place))
        target.kind = tree->isExpanded(index) ? RecordedTarget::Collapse : RecordedTarget::Expand;
    else if (isLeft && !(index.flags() & Qt::ItemIsEnabled))
        return {};
    if (isLeft)
        addPlaceInItem(&target, *view, index, place);
    return target.item.isEmpty() ? placeTarget(view, place) : target;
}

// Beside a section, it is made larger or smaller.
bool isResizing(const QHeaderView *header)
{
    const Qt::CursorShape shape = header->cursor().shape();
    return shape == Qt::SplitHCursor || shape == Qt::SplitVCursor;
}

RecordedTarget headerTarget(QHeaderView *header, const QPoint &place, Qt::MouseButton button)
{
    const int section = header->logicalIndexAt(place);
    const bool isUsed = header->sectionsClickable() || header->sectionsMovable();
    const bool isLeft = button == Qt::LeftButton;
    if (section < 0 || !header->model() || (isLeft && (!isUsed || isResizing(header))))
        return {};
    return itemTarget(header, selectorOf(header, section));
}

RecordedTarget tabTarget(QTabBar *bar, const QPoint &place, Qt::MouseButton button)
{
    const int tab = bar->tabAt(place);
    if (tab < 0 || (button == Qt::LeftButton && !bar->isTabEnabled(tab)))
        return {};
    return itemTarget(tabsOf(bar), selectorOf(bar, tab));
}

// The choice from its menu says that it was opened.
RecordedTarget buttonTarget(QAbstractButton *button, const QPoint &place, Qt::MouseButton pressed)
{
    if (!ButtonAccess::isHit(button, place))
        return {};
    return pressed == Qt::LeftButton && opensMenu(button, place)
               ? RecordedTarget()
               : targetOf(RecordedTarget::Click, button);
}

RecordedTarget groupTarget(QGroupBox *box, const QPoint &place)
{
    const QStyleOptionGroupBox look = GroupAccess::optionOf(box);
    const auto part = box->style()->hitTestComplexControl(QStyle::CC_GroupBox, &look, place, box);
    const bool isHit = box->isCheckable() &&
                       (part == QStyle::SC_GroupBoxCheckBox || part == QStyle::SC_GroupBoxLabel);
    return isHit ? targetOf(RecordedTarget::Click, box) : RecordedTarget();
}

// Without an object where there is no link.
RecordedTarget linkTarget(QWidget *widget, const QPoint &place)
{
    const int link = linkAt(widget, place);
    if (link < 0)
        return {};
    const QVariantList byText{linksOf(widget)[std::size_t(link)].text};
    return itemTarget(widget, hasItem(widget, byText) ? byText : QVariantList{link, 0});
}

RecordedTarget textTarget(QWidget *text, const QPoint &place)
{
    const auto *browser = qobject_cast<QTextBrowser *>(text);
    const bool isLink = browser && !browser->anchorAt(place).isEmpty();
    const RecordedTarget link = isLink ? linkTarget(text, place) : RecordedTarget();
    if (link.object)
        return link;
    // Its cursor can't be moved by keys.
    const bool takesNoKeys = text->focusPolicy() == Qt::NoFocus;
    return isLink || takesNoKeys ? placeTarget(text, place)
                                 : targetOf(RecordedTarget::Cursor, text);
}

bool takesSelection(const QWidget *text)
{
    return !text->property("readOnly").toBool() &&
           QGuiApplication::clipboard()->supportsSelection();
}

// A window is a background, unless it is all that there is.
RecordedTarget plainTarget(QWidget *widget, const QPoint &place, Qt::MouseButton button)
{
    const bool isBackground = widget->isWindow() && !qobject_cast<QAbstractScrollArea *>(widget) &&
                              !widget->findChildren<QWidget *>(QString()).isEmpty();
    if (isPassive(widget) || isBackground)
        return {};
    return button == Qt::RightButton ? targetOf(RecordedTarget::Click, widget)
                                     : placeTarget(widget, place);
}

} // namespace

QModelIndex indexAt(const RecordedTarget &target, const QWidget *pressed, const QPoint &global)
{
    const auto *view = qobject_cast<const QAbstractItemView *>(target.object.data());
    return view && pressed ? view->indexAt(pressed->mapFromGlobal(global)) : QModelIndex();
}

bool isMiddleFree(const QObject *object)
{
    const auto *view = qobject_cast<const QAbstractItemView *>(object);
    return view && !view->indexAt(view->viewport()->rect().center()).isValid();
}

QComboBox *comboBoxOfList(const QWidget *widget)
{
    const QWidget *window = widget->window();
    return window->inherits("QComboBoxPrivateContainer")
               ? qobject_cast<QComboBox *>(window->parentWidget())
               : nullptr;
}

QDateTimeEdit *dateOfCalendar(const QWidget *widget)
{
    const QWidget *window = widget ? widget->window() : nullptr;
    return window && window->inherits("QCalendarPopup")
               ? qobject_cast<QDateTimeEdit *>(window->parentWidget())
               : nullptr;
}

QWidget *ownerOf(QWidget *widget)
{
    QWidget *parent = widget->parentWidget();
    auto *area = qobject_cast<QAbstractScrollArea *>(parent);
    if (area && area->viewport() == widget)
        return area;
    while (widget->focusProxy() && widget->focusProxy() == widget->parentWidget())
        widget = widget->focusProxy();
    return widget;
}

RecordedTarget recordedTarget(QWidget *widget, const QPoint &place, Qt::MouseButton button)
{
    const bool isToolTip = widget->window()->inherits("QTipLabel");
    if (!widget->isEnabled() || isToolTip)
        return {};
    if (QDateTimeEdit *date = dateOfCalendar(widget))
        return targetOf(RecordedTarget::Value, date);
    QWidget *owner = ownerOf(widget);
    if (auto *header = qobject_cast<QHeaderView *>(owner))
        return headerTarget(header, place, button);
    if (auto *view = qobject_cast<QAbstractItemView *>(owner))
        return widget == view->viewport() ? viewTarget(view, place, button) : RecordedTarget();
    if (auto *bar = qobject_cast<QTabBar *>(owner))
        return tabTarget(bar, place, button);
    // What shows other tabs chooses none, and a script brings a tab into sight by itself.
    const bool isArrowOfTabs = qobject_cast<QTabBar *>(owner->parentWidget()) &&
                               owner->objectName().startsWith(QLatin1String("Scroll"));
    if (isArrowOfTabs || (button == Qt::LeftButton && isToolBarExtension(owner)))
        return {};
    if (auto *push = qobject_cast<QAbstractButton *>(owner))
        return buttonTarget(push, place, button);
    if (auto *group = qobject_cast<QGroupBox *>(owner))
        return groupTarget(group, place);
    if (button == Qt::LeftButton && qobject_cast<QComboBox *>(owner) && owner == widget)
        return {};
    QWidget *text = isText(owner) ? owner : widget;
    if (button == Qt::LeftButton && isText(text))
        return textTarget(text, place);
    if (button == Qt::MiddleButton && isText(text) && takesSelection(text))
        return targetOf(RecordedTarget::Paste, text);
    if (button == Qt::LeftButton && (isSlider(owner) || qobject_cast<QAbstractSpinBox *>(owner)))
        return targetOf(RecordedTarget::Value, owner);
    const RecordedTarget link =
        button == Qt::LeftButton ? linkTarget(owner, place) : RecordedTarget();
    if (link.object)
        return link;
    const bool isWhole = isText(owner) || qobject_cast<QComboBox *>(owner) ||
                         (qobject_cast<QLabel *>(owner) && !owner->isWindow());
    if (isWhole)
        return targetOf(RecordedTarget::Click, owner);
    return plainTarget(owner, place, button);
}

} // namespace Morvex
