#include "qtbackend/typedsearch.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/celleditor.h"
#include "qtbackend/itemselectors.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>

#include <utility>

namespace Morvex {
namespace {

// Invalid where letters search nothing that a click would choose.
QModelIndex currentIndexOf(QWidget *target)
{
    if (const auto *box = qobject_cast<const QComboBox *>(target))
        return box->isEditable() ? QModelIndex()
                                 : box->model()->index(box->currentIndex(), box->modelColumn(),
                                                       box->rootModelIndex());
    const auto *view = qobject_cast<const QAbstractItemView *>(target);
    const bool isSearched = view && view->selectionMode() != QAbstractItemView::MultiSelection &&
                            editedView(QApplication::focusWidget()) != view;
    return isSearched ? view->currentIndex() : QModelIndex();
}

int rowsBeside(const QModelIndex &index)
{
    return index.isValid() ? index.model()->rowCount(index.parent()) : 0;
}

QVariantList selectorIn(QWidget *target, const QModelIndex &index)
{
    if (auto *box = qobject_cast<QComboBox *>(target))
        return selectorOf(box, index.row());
    return selectorOf(qobject_cast<QAbstractItemView *>(target), index);
}

} // namespace

void TypedSearch::begin(QWidget *target, const QString &text, int number)
{
    const bool isSearched =
        qobject_cast<QComboBox *>(target) || qobject_cast<QAbstractItemView *>(target);
    if (!isSearched || text == QLatin1String(" "))
        return;
    const bool isContinued = m_searchedIn == target && m_sinceLast.isValid() &&
                             !m_sinceLast.hasExpired(QApplication::keyboardInputInterval());
    m_searched = isContinued ? m_searched + text : text;
    if (m_searchedIn != target)
        m_lastFound = 0;
    m_searchedIn = target;
    m_sinceLast.start();
    m_target = target;
    m_number = number;
    m_before = currentIndexOf(target);
    m_rowsBefore = rowsBeside(m_before);
}

// What a widget does with its keys itself may make another item the current one, too.
bool TypedSearch::isFound() const
{
    const bool isRemoval = m_rowsBefore > 0 && rowsBeside(m_before) != m_rowsBefore;
    const QString text = isRemoval ? QString() : currentIndexOf(m_target).data().toString();
    const auto begins = [&text](const QString &searched) {
        return text.startsWith(searched, Qt::CaseInsensitive);
    };
    const bool isOneLetter = m_searched.count(m_searched.at(0)) == m_searched.size();
    return begins(m_searched) || (isOneLetter && begins(m_searched.left(1)));
}

void TypedSearch::settle()
{
    const int number = std::exchange(m_number, 0);
    if (number == 0 || !m_target || !isFound())
        return;
    const QModelIndex index = currentIndexOf(m_target);
    const QVariantList item = selectorIn(m_target, index);
    if (index != m_before && !item.isEmpty())
        m_report.replace(number, QStringLiteral("click"), m_target,
                         {{QStringLiteral("item"), item}});
    else if (index == m_before && m_lastFound > 0 && m_lastFound == number - 1)
        m_report.cancel(number);
    else
        return;
    m_lastFound = number;
}

} // namespace Morvex
