#include "qtbackend/simpleitems.h"

#include "qtbackend/inputsequence.h"
#include "qtbackend/links.h"
#include "qtbackend/mousetarget.h"
#include "qtbackend/whyblocked.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOption>
#include <QTextBrowser>

namespace Morvex {
namespace {

const int maxOpeningMs = 1000;

QAccessibleInterface *interfaceAt(QWidget *owner, const QList<int> &path)
{
    QAccessibleInterface *part = owner ? QAccessible::queryAccessibleInterface(owner) : nullptr;
    for (const int index : path) {
        if (part)
            part = part->child(index);
    }
    return part && part->isValid() ? part : nullptr;
}

QStringList childNames(const QAccessibleInterface &part)
{
    QStringList names;
    const int count = part.childCount();
    for (int i = 0; i < count; ++i) {
        const QAccessibleInterface *child = part.child(i);
        // Objects are found as such.
        names += child && !child->object() ? child->text(QAccessible::Name) : QString();
    }
    return names;
}

// Away from the middle, where an entry may come to be: a box takes a click that follows there for
// the end of the first one.
QPoint openingPlace(const QComboBox *box)
{
    QStyleOptionComboBox option;
    option.initFrom(box);
    option.editable = box->isEditable();
    option.frame = box->hasFrame();
    return box->style()
        ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, box)
        .center();
}

// The largest part of the place that is on one side of the other.
QRect largestBeside(const QRect &place, const QRect &other)
{
    const QRect parts[] = {{place.topLeft(), QPoint(other.left() - 1, place.bottom())},
                           {QPoint(other.right() + 1, place.top()), place.bottomRight()},
                           {place.topLeft(), QPoint(place.right(), other.top() - 1)},
                           {QPoint(place.left(), other.bottom() + 1), place.bottomRight()}};
    QRect largest;
    for (const QRect &part : parts) {
        const QRect inside = part.intersected(place);
        if (inside.width() * inside.height() > largest.width() * largest.height())
            largest = inside;
    }
    return largest;
}

} // namespace

ComboBoxItem::ComboBoxItem(QComboBox *box, const ItemSelector &selector)
    : m_box(box)
{
    QStringList texts;
    for (int row = 0; row < box->count(); ++row)
        texts += box->itemText(row);
    m_row = indexAmong(selector, texts, selector.row, &m_error);
}

QModelIndex ComboBoxItem::index() const
{
    return m_box->model()->index(m_row, m_box->modelColumn(), m_box->rootModelIndex());
}

QVariantMap ComboBoxItem::properties() const
{
    return {{QStringLiteral("row"), m_row},
            {QStringLiteral("enabled"), bool(index().flags() & Qt::ItemIsEnabled)},
            {QStringLiteral("selected"), m_box->currentIndex() == m_row}};
}

QString ComboBoxItem::whyBlocked() const
{
    return Morvex::whyBlocked(m_box);
}

void ComboBoxItem::reveal(InputSequence &input)
{
    const QPointer<QComboBox> box = m_box;
    const auto isOpen = [box] { return !box || box->view()->isVisible(); };
    input.add([box, isOpen] {
        if (!isOpen() && clickWhereFree(box, openingPlace(box)))
            return QString();
        if (!isOpen())
            box->showPopup();
        return QString();
    });
    input.waitUntil(isOpen, maxOpeningMs);
    // A box may have a list, but none that opens by the mouse.
    input.add([box, isOpen] {
        if (!isOpen())
            box->showPopup();
        return QString();
    });
    input.waitUntil(isOpen, maxOpeningMs);
    const QPersistentModelIndex entry = index();
    input.add([box, entry] {
        if (box)
            box->view()->scrollTo(entry);
        return QString();
    });
}

void ComboBoxItem::conceal()
{
    if (m_box)
        m_box->hidePopup();
}

QRect ComboBoxItem::place() const
{
    return m_box ? m_box->view()->visualRect(index()) : QRect();
}

TabItem::TabItem(QTabBar *bar, const ItemSelector &selector)
    : m_bar(bar)
{
    QStringList texts;
    for (int i = 0; i < bar->count(); ++i)
        texts += shownText(bar->tabText(i));
    m_index = indexAmong(selector, texts, selector.column, &m_error);
}

QVariantMap TabItem::properties() const
{
    return {{QStringLiteral("column"), m_index},
            {QStringLiteral("enabled"), m_bar->isTabEnabled(m_index)},
            {QStringLiteral("selected"), m_bar->currentIndex() == m_index},
            {QStringLiteral("toolTip"), m_bar->tabToolTip(m_index)}};
}

// A tab that is scrolled out of sight can be chosen by the keys alone.
void TabItem::reveal(InputSequence &input)
{
    const QPointer<QTabBar> bar = m_bar;
    const int index = m_index;
    input.add([bar, index] {
        if (bar && !bar->rect().contains(bar->tabRect(index).center()))
            bar->setCurrentIndex(index);
        return QString();
    });
}

// Without its buttons where its middle is on one of them, which closes it, say.
QRect TabItem::place() const
{
    if (!m_bar)
        return {};
    const QRect tab = m_bar->tabRect(m_index);
    const QPoint middle = tab.intersected(m_bar->rect()).center();
    QRect rest = tab;
    bool isCovered = false;
    for (const auto side : {QTabBar::LeftSide, QTabBar::RightSide}) {
        const QWidget *button = m_bar->tabButton(m_index, side);
        if (!button || !button->isVisible())
            continue;
        isCovered = isCovered || button->geometry().contains(middle);
        rest = largestBeside(rest, button->geometry());
    }
    return isCovered && !rest.isEmpty() ? rest : tab;
}

HeaderItem::HeaderItem(QHeaderView *header, const ItemSelector &selector)
    : m_header(header)
{
    QStringList texts;
    for (int i = 0; header->model() && i < header->count(); ++i)
        texts += header->model()->headerData(i, header->orientation()).toString();
    const bool isHorizontal = header->orientation() == Qt::Horizontal;
    m_section =
        indexAmong(selector, texts, isHorizontal ? selector.column : selector.row, &m_error);
}

QString HeaderItem::text() const
{
    return m_header->model()->headerData(m_section, m_header->orientation()).toString();
}

QVariantMap HeaderItem::properties() const
{
    const bool isSorted =
        m_header->isSortIndicatorShown() && m_header->sortIndicatorSection() == m_section;
    return {{QStringLiteral("section"), m_section},
            {QStringLiteral("visible"), !m_header->isSectionHidden(m_section)},
            {QStringLiteral("sorted"), isSorted},
            {QStringLiteral("descending"),
             isSorted && m_header->sortIndicatorOrder() == Qt::DescendingOrder}};
}

// A header follows its table.
void HeaderItem::reveal(InputSequence &input)
{
    const QPointer<QHeaderView> header = m_header;
    const int section = m_section;
    input.add([header, section] {
        auto *table = header ? qobject_cast<QAbstractItemView *>(header->parentWidget()) : nullptr;
        if (table && table->model()) {
            const bool isHorizontal = header->orientation() == Qt::Horizontal;
            const QModelIndex root = table->rootIndex();
            table->scrollTo(isHorizontal ? table->model()->index(0, section, root)
                                         : table->model()->index(section, 0, root));
        }
        return QString();
    });
}

QRect HeaderItem::place() const
{
    if (!m_header || m_header->isSectionHidden(m_section))
        return {};
    const int start = m_header->sectionViewportPosition(m_section);
    const int size = m_header->sectionSize(m_section);
    return m_header->orientation() == Qt::Horizontal
               ? QRect(start, 0, size, m_header->viewport()->height())
               : QRect(0, start, m_header->viewport()->width(), size);
}

LinkItem::LinkItem(QWidget *owner, const ItemSelector &selector)
    : m_owner(owner)
{
    QStringList texts;
    for (const Link &link : linksOf(owner))
        texts += link.text;
    m_index = indexAmong(selector, texts, selector.row, &m_error);
}

QString LinkItem::text() const
{
    const std::vector<Link> links = linksOf(m_owner);
    return m_index < int(links.size()) ? links[std::size_t(m_index)].text : QString();
}

void LinkItem::reveal(InputSequence &input)
{
    const QPointer<QTextBrowser> browser = qobject_cast<QTextBrowser *>(m_owner.data());
    const QRect where = place();
    input.add([browser, where] {
        if (browser && !browser->viewport()->rect().contains(where.center()))
            browser->verticalScrollBar()->setValue(browser->verticalScrollBar()->value() +
                                                   where.top());
        return QString();
    });
}

QWidget *LinkItem::widget() const
{
    auto *browser = qobject_cast<QTextBrowser *>(m_owner.data());
    return browser ? browser->viewport() : m_owner.data();
}

QRect LinkItem::place() const
{
    const std::vector<Link> links = linksOf(m_owner);
    return m_index < int(links.size()) ? links[std::size_t(m_index)].place : QRect();
}

AccessibleItem::AccessibleItem(QWidget *owner, const ItemSelector &selector)
    : m_owner(owner)
{
    const QAccessibleInterface *part = interfaceAt(owner, {});
    if (selector.isCell || !part || childNames(*part).join(QString()).isEmpty()) {
        m_error = QStringLiteral("%1 has no items")
                      .arg(QString::fromLatin1(owner->metaObject()->className()));
        return;
    }
    ItemPath path(selector);
    while (!path.isAtEnd()) {
        const int index = path.next(part ? childNames(*part) : QStringList());
        if (index < 0)
            break;
        m_path += index;
        part = part->child(index);
    }
    m_error = path.error();
}

QString AccessibleItem::text() const
{
    const QAccessibleInterface *part = interfaceAt(m_owner, m_path);
    return part ? part->text(QAccessible::Name) : QString();
}

QVariantMap AccessibleItem::properties() const
{
    const QAccessibleInterface *part = interfaceAt(m_owner, m_path);
    if (!part)
        return {};
    const QAccessible::State state = part->state();
    QVariantMap properties{{QStringLiteral("enabled"), !state.disabled},
                           {QStringLiteral("selected"), bool(state.selected)},
                           {QStringLiteral("value"), part->text(QAccessible::Value)}};
    if (state.checkable)
        properties[QStringLiteral("checked")] = bool(state.checked);
    if (state.expandable)
        properties[QStringLiteral("expanded")] = bool(state.expanded);
    return properties;
}

QRect AccessibleItem::place() const
{
    const QAccessibleInterface *part = interfaceAt(m_owner, m_path);
    return part ? part->rect().translated(-m_owner->mapToGlobal(QPoint())) : QRect();
}

} // namespace Morvex
