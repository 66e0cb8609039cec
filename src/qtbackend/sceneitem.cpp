#include "qtbackend/sceneitem.h"

#include "qtbackend/inputsequence.h"
#include "qtbackend/mousetarget.h"
#include "qtbackend/sceneaccess.h"
#include "qtbackend/scenecell.h"
#include "qtbackend/scenetable.h"
#include "qtbackend/sceneview.h"
#include "qtbackend/whyblocked.h"

namespace Morvex {
namespace {

const int maxOpeningMs = 2000;

QObject *popupOf(const QObject *box)
{
    return box ? box->property("popup").value<QObject *>() : nullptr;
}

bool isOpen(const QObject *popup)
{
    return popup && popup->property("opened").toBool();
}

// A click in the text of one that can be edited opens nothing.
QObject *openerOf(QObject *box)
{
    auto *indicator = box->property("indicator").value<QObject *>();
    const bool isNeeded = indicator && box->property("editable").toBool();
    return isNeeded && SceneAccess::self()->isShown(indicator) ? indicator : box;
}

QStringList textsOf(const QObjectList &delegates)
{
    QStringList texts;
    for (const QObject *delegate : delegates)
        texts += shownTextOf(delegate);
    return texts;
}

QObject *delegateAt(QObject *view, int row)
{
    for (QObject *delegate : delegatesOf(view)) {
        if (sceneRowNumber(view, delegate) == row)
            return delegate;
    }
    return nullptr;
}

} // namespace

bool SceneItem::isPossible(QObject *object)
{
    return isSceneComboBox(object) || sceneViewOf(object);
}

SceneItem::SceneItem(QObject *owner, const ItemSelector &selector)
    : m_owner(owner)
    , m_selector(selector)
{
    if (isSceneComboBox(owner))
        findInBox(selector);
    else if (isSceneTable(owner))
        findInTable();
    else
        findInView(selector);
}

void SceneItem::findNumber(const ItemSelector &selector, int count)
{
    if (selector.row >= 0 && selector.row < count)
        m_row = selector.row;
    else
        m_error = QStringLiteral("there is no item %1; there are %2")
                      .arg(selector.describe(), QString::number(count));
}

void SceneItem::findInBox(const ItemSelector &selector)
{
    QStringList texts;
    const int count = m_owner->property("count").toInt();
    for (int row = 0; row < count; ++row)
        texts += sceneEntryText(m_owner, row);
    if (selector.isCell)
        findNumber(selector, count);
    else
        for (int row = 0, left = qMax(1, selector.occurrence); row < count && m_row < 0; ++row)
            m_row = texts.at(row) == selector.path && --left == 0 ? row : -1;
    if (m_row >= 0)
        m_text = texts.at(m_row);
    else if (m_error.isEmpty())
        m_error =
            QStringLiteral("there is no item %1%2").arg(selector.describe(), listedTexts(texts));
}

void SceneItem::findInTable()
{
    const QVariant x = m_owner->property("contentX");
    const QVariant y = m_owner->property("contentY");
    const QObject *cell = showSceneCell(m_owner, m_selector);
    if (cell) {
        m_row = sceneCellOf(cell).row;
        m_text = shownTextOf(cell);
        m_owner->setProperty("contentX", x);
        m_owner->setProperty("contentY", y);
    } else {
        m_error = QStringLiteral("there is no item %1%2")
                      .arg(m_selector.describe(), listedTexts(textsOf(delegatesOf(m_owner))));
    }
}

void SceneItem::findInView(const ItemSelector &selector)
{
    m_text = selector.path;
    if (selector.isCell)
        return findNumber(selector, m_owner->property("count").toInt());
    const QObjectList delegates = delegatesOf(m_owner);
    const QStringList texts = textsOf(delegates);
    if (selector.occurrence == 0 && texts.count(selector.path) == 1) {
        m_delegate = delegates.at(texts.indexOf(selector.path));
        m_row = sceneRowNumber(m_owner, m_delegate);
        return;
    }
    m_row = findSceneRow(m_owner, selector.path, qMax(1, selector.occurrence));
    if (m_row < 0)
        m_error =
            QStringLiteral("there is no item %1%2").arg(selector.describe(), listedTexts(texts));
}

QVariantMap SceneItem::properties() const
{
    if (m_row < 0 || !m_owner)
        return {};
    return {{QStringLiteral("row"), m_row},
            {QStringLiteral("selected"), m_owner->property("currentIndex").toInt() == m_row}};
}

QString SceneItem::whyBlocked() const
{
    return m_owner ? Morvex::whyBlocked(m_owner.data())
                   : QStringLiteral("the item no longer exists");
}

void SceneItem::reveal(InputSequence &input)
{
    const QPointer<QObject> owner = m_owner;
    if (isSceneComboBox(owner)) {
        const QPointer<QObject> popup = popupOf(owner);
        if (!isOpen(popup)) {
            input.add([owner] { return owner ? clickSceneItem(openerOf(owner)) : QString(); });
            input.waitUntil([popup] { return !popup || isOpen(popup); }, maxOpeningMs);
        }
    }
    if (isSceneTable(owner)) {
        input.add([owner, selector = m_selector] {
            QObject *cell = owner ? showSceneCell(owner, selector) : nullptr;
            if (cell)
                SceneAccess::self()->scrollIntoSight(cell);
            if (owner)
                settleSceneTable(owner);
            return QString();
        });
        return;
    }
    input.add([owner, row = m_row] {
        if (QObject *view = owner && row >= 0 ? sceneViewOf(owner) : nullptr)
            showSceneRow(view, row);
        return QString();
    });
}

QObject *SceneItem::sceneItem() const
{
    if (isSceneTable(m_owner))
        return sceneCellAt(m_owner, m_selector);
    QObject *view = m_row >= 0 && m_owner ? sceneViewOf(m_owner) : nullptr;
    return view ? delegateAt(view, m_row) : m_delegate.data();
}

} // namespace Morvex
