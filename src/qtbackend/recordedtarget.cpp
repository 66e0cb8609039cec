#include "qtbackend/recordedtarget.h"

#include "qtbackend/itempath.h"
#include "qtbackend/items.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDialog>
#include <QDockWidget>
#include <QGroupBox>
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
#include <QStyleOption>
#include <QStylePainter>
#include <QTabBar>
#include <QTabWidget>
#include <QTextBrowser>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>

#include <initializer_list>

namespace Morvex {
namespace {

// To look for others with the same text takes long, and fetches what a model has left for later.
const int maxCompared = 2000;

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

struct ToolButtonAccess : QToolButton
{
    static QStyleOptionToolButton optionOf(const QToolButton *button)
    {
        QStyleOptionToolButton option;
        (button->*(&ToolButtonAccess::initStyleOption))(&option);
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
                                  &QScrollArea::staticMetaObject, &QTabWidget::staticMetaObject,
                                  &QMainWindow::staticMetaObject, &QDialog::staticMetaObject});
}

bool isText(const QWidget *widget)
{
    return inheritsOneOf(widget, {&QLineEdit::staticMetaObject, &QTextEdit::staticMetaObject,
                                  &QPlainTextEdit::staticMetaObject});
}

bool isCompared(const QAbstractItemModel *model, const QModelIndex &parent, int columns)
{
    return !model->canFetchMore(parent) && model->rowCount(parent) * columns <= maxCompared;
}

QVariantMap option(const char *name, int value)
{
    return {{QLatin1String(name), value}};
}

// How many of the texts before the row are the same; negative when none of all others is.
int sameBefore(const QAbstractItemModel *model, const QModelIndex &parent, int row)
{
    const QString text = model->index(row, 0, parent).data().toString();
    int before = 0;
    int others = 0;
    for (int i = 0; i < model->rowCount(parent); ++i) {
        const bool isSame = i != row && model->index(i, 0, parent).data().toString() == text;
        others += isSame ? 1 : 0;
        before += isSame && i < row ? 1 : 0;
    }
    return others > 0 ? before : -1;
}

QVariantList nodeSelector(QTreeView *tree, const QModelIndex &index)
{
    QStringList path;
    const QModelIndex root = tree->rootIndex();
    for (QModelIndex node = index.sibling(index.row(), 0); node.isValid() && node != root;
         node = node.parent())
        path.prepend(node.data().toString());
    if (path.contains(QString()))
        return {};
    QVariantMap options;
    if (index.column() > 0)
        options = option("column", index.column());
    const int before = isCompared(tree->model(), index.parent(), 1)
                           ? sameBefore(tree->model(), index.parent(), index.row())
                           : -1;
    if (before >= 0)
        options[QStringLiteral("occurrence")] = before + 1;
    QVariantList selector{itemPathOf(path)};
    if (!options.isEmpty())
        selector += options;
    return selector;
}

QVariantList cellSelector(QAbstractItemView *view, const QModelIndex &index)
{
    const QAbstractItemModel *model = view->model();
    const QModelIndex root = view->rootIndex();
    const QVariantList byText{index.data().toString()};
    const bool isTable = view->inherits("QTableView");
    const bool isNamed = (isTable || index.column() == 0) &&
                         isCompared(model, root, isTable ? model->columnCount(root) : 1);
    return isNamed && hasItem(view, byText) ? byText : QVariantList{index.row(), index.column()};
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

RecordedTarget viewTarget(QAbstractItemView *view, const QPoint &place, Qt::MouseButton button)
{
    if (comboBoxOfList(view))
        return {};
    const QModelIndex index = view->model() ? view->indexAt(place) : QModelIndex();
    if (!index.isValid()) {
        const bool matters = button != Qt::LeftButton ||
                             (view->selectionModel() && view->selectionModel()->hasSelection());
        return matters ? placeTarget(view, place) : RecordedTarget();
    }
    RecordedTarget target = itemTarget(view, selectorOf(view, index));
    const auto *tree = qobject_cast<QTreeView *>(view);
    if (tree && button == Qt::LeftButton && !target.item.isEmpty() &&
        isOnHandle(tree, index, place))
        target.kind = tree->isExpanded(index) ? RecordedTarget::Collapse : RecordedTarget::Expand;
    return target.item.isEmpty() ? placeTarget(view, place) : target;
}

RecordedTarget headerTarget(QHeaderView *header, const QPoint &place)
{
    const int section = header->logicalIndexAt(place);
    if (section < 0 || !header->model())
        return {};
    const bool isHorizontal = header->orientation() == Qt::Horizontal;
    const QVariantList byText{
        header->model()->headerData(section, header->orientation()).toString()};
    return itemTarget(header, hasItem(header, byText) ? byText
                              : isHorizontal          ? QVariantList{0, section}
                                                      : QVariantList{section, 0});
}

RecordedTarget tabTarget(QTabBar *bar, const QPoint &place)
{
    const int tab = bar->tabAt(place);
    if (tab < 0)
        return {};
    auto *tabs = qobject_cast<QTabWidget *>(bar->parentWidget());
    QWidget *owner = tabs && tabs->tabBar() == bar ? static_cast<QWidget *>(tabs) : bar;
    const QVariantList byText{shownText(bar->tabText(tab))};
    return itemTarget(owner, hasItem(owner, byText) ? byText : QVariantList{0, tab});
}

RecordedTarget buttonTarget(QAbstractButton *button, const QPoint &place)
{
    if (!ButtonAccess::isHit(button, place))
        return {};
    const auto *tool = qobject_cast<QToolButton *>(button);
    if (tool && tool->popupMode() == QToolButton::MenuButtonPopup) {
        const QStyleOptionToolButton look = ToolButtonAccess::optionOf(tool);
        if (tool->style()->hitTestComplexControl(QStyle::CC_ToolButton, &look, place, tool) ==
            QStyle::SC_ToolButtonMenu)
            return placeTarget(button, place);
    }
    return targetOf(RecordedTarget::Click, button);
}

RecordedTarget groupTarget(QGroupBox *box, const QPoint &place)
{
    const QStyleOptionGroupBox look = GroupAccess::optionOf(box);
    const auto part = box->style()->hitTestComplexControl(QStyle::CC_GroupBox, &look, place, box);
    const bool isHit = box->isCheckable() &&
                       (part == QStyle::SC_GroupBoxCheckBox || part == QStyle::SC_GroupBoxLabel);
    return isHit ? targetOf(RecordedTarget::Click, box) : RecordedTarget();
}

RecordedTarget textTarget(QWidget *text, const QPoint &place)
{
    const auto *browser = qobject_cast<QTextBrowser *>(text);
    const bool isLink = browser && !browser->anchorAt(place).isEmpty();
    return isLink ? placeTarget(text, place) : targetOf(RecordedTarget::Cursor, text);
}

RecordedTarget valueTarget(QWidget *widget, const QPoint &place)
{
    const auto *date = qobject_cast<QDateTimeEdit *>(widget);
    return date && date->calendarPopup() ? placeTarget(widget, place)
                                         : targetOf(RecordedTarget::Value, widget);
}

// A window is a background, unless it is all that there is.
RecordedTarget plainTarget(QWidget *widget, const QPoint &place, Qt::MouseButton button)
{
    const bool isBackground =
        widget->isWindow() && !widget->findChildren<QWidget *>(QString()).isEmpty();
    if (isPassive(widget) || isBackground)
        return {};
    return button == Qt::RightButton ? targetOf(RecordedTarget::Click, widget)
                                     : placeTarget(widget, place);
}

} // namespace

QComboBox *comboBoxOfList(const QWidget *widget)
{
    const QWidget *window = widget->window();
    return window->inherits("QComboBoxPrivateContainer")
               ? qobject_cast<QComboBox *>(window->parentWidget())
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

QVariantList selectorOf(QAbstractItemView *view, const QModelIndex &index)
{
    auto *tree = qobject_cast<QTreeView *>(view);
    return tree ? nodeSelector(tree, index) : cellSelector(view, index);
}

QVariantList selectorOf(QComboBox *box, int row)
{
    const QVariantList byText{box->itemText(row)};
    return hasItem(box, byText) ? byText : QVariantList{row, 0};
}

RecordedTarget recordedTarget(QWidget *widget, const QPoint &place, Qt::MouseButton button)
{
    if (!widget->isEnabled())
        return {};
    QWidget *owner = ownerOf(widget);
    if (auto *header = qobject_cast<QHeaderView *>(owner))
        return headerTarget(header, place);
    if (auto *view = qobject_cast<QAbstractItemView *>(owner))
        return widget == view->viewport() ? viewTarget(view, place, button) : RecordedTarget();
    if (auto *bar = qobject_cast<QTabBar *>(owner))
        return tabTarget(bar, place);
    if (auto *push = qobject_cast<QAbstractButton *>(owner))
        return buttonTarget(push, place);
    if (auto *group = qobject_cast<QGroupBox *>(owner))
        return groupTarget(group, place);
    if (button == Qt::LeftButton && qobject_cast<QComboBox *>(owner) && owner == widget)
        return {};
    QWidget *text = isText(owner) ? owner : widget;
    if (button == Qt::LeftButton && isText(text))
        return textTarget(text, place);
    if (inheritsOneOf(owner,
                      {&QAbstractSlider::staticMetaObject, &QAbstractSpinBox::staticMetaObject}) &&
        !qobject_cast<QScrollBar *>(owner) && button == Qt::LeftButton)
        return valueTarget(owner, place);
    const bool isWhole = isText(owner) || qobject_cast<QComboBox *>(owner) ||
                         (qobject_cast<QLabel *>(owner) && !owner->isWindow());
    if (isWhole)
        return targetOf(RecordedTarget::Click, owner);
    return plainTarget(owner, place, button);
}

} // namespace Morvex
