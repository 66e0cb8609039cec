#include "qtbackend/scenelinks.h"

#include "qtbackend/inputsequence.h"
#include "qtbackend/links.h"
#include "qtbackend/sceneaccess.h"
#include "qtbackend/scenehandlers.h"
#include "qtbackend/whyblocked.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>
#include <optional>
#include <utility>

namespace Morvex {
namespace {

// In pixels, as far apart as places are looked at: less than a letter is high and a word is wide.
const int lookedAtAcross = 3;
const int lookedAtDown = 4;

bool isText(const QObject *item)
{
    return item->inherits("QQuickText") || item->inherits("QQuickTextEdit");
}

std::vector<TextLink> linksOfText(const QObject *item)
{
    if (const QTextDocument *document = SceneAccess::self()->documentOf(item))
        return linksIn(*document);
    const QString text = item->property("text").toString();
    const int format = item->property("textFormat").toInt();
    QTextDocument document;
    if (format == Qt::MarkdownText)
        document.setMarkdown(text);
    else if (format != Qt::PlainText && text.contains(QLatin1String("<a "), Qt::CaseInsensitive))
        document.setHtml(text);
    return linksIn(document);
}

QStringList textsOf(const std::vector<TextLink> &links)
{
    QStringList texts;
    for (const TextLink &link : links)
        texts += link.text;
    return texts;
}

// Where an item has its document.
QPointF originIn(QObject *item, const QTextDocument &document)
{
    QRectF cursor;
    QMetaObject::invokeMethod(item, "positionToRectangle", Q_RETURN_ARG(QRectF, cursor),
                              Q_ARG(int, 0));
    const QTextBlock block = document.begin();
    const QTextLine line = block.layout()->lineForTextPosition(0);
    const QPointF first = document.documentLayout()->blockBoundingRect(block).topLeft();
    return line.isValid() ? cursor.topLeft() - first - QPointF(line.cursorToX(0), line.y())
                          : QPointF();
}

// Editors take their padding the wrong way when they are asked.
QString targetAt(QObject *item, const QPoint &place)
{
    if (const QTextDocument *document = SceneAccess::self()->documentOf(item))
        return document->documentLayout()->anchorAt(place - originIn(item, *document));
    QString target;
    QMetaObject::invokeMethod(item, "linkAt", Q_RETURN_ARG(QString, target),
                              Q_ARG(qreal, place.x()), Q_ARG(qreal, place.y()));
    return target;
}

// The last place this way from one on which the link is.
QPoint endOfLink(QObject *item, QPoint place, const QPoint &step, const QString &target)
{
    while (targetAt(item, place + step) == target)
        place += step;
    return place;
}

// From a place on its first line.
QPoint middleOfLink(QObject *item, const QPoint &place, const QString &target)
{
    const int end = endOfLink(item, place, {1, 0}, target).x();
    const QPoint middle((place.x() + end) / 2, place.y());
    return (middle + endOfLink(item, middle, {0, 1}, target)) / 2;
}

// The first letter of a link to there, for items that know the places of their letters.
std::optional<QPoint> beginOfLink(QObject *item, const QString &target)
{
    const QTextDocument *document = SceneAccess::self()->documentOf(item);
    const std::vector<TextLink> links = document ? linksIn(*document) : std::vector<TextLink>();
    const auto link = std::find_if(links.begin(), links.end(), [&target](const TextLink &each) {
        return each.target == target;
    });
    if (link == links.end())
        return std::nullopt;
    QRectF letter;
    QMetaObject::invokeMethod(item, "positionToRectangle", Q_RETURN_ARG(QRectF, letter),
                              Q_ARG(int, link->start));
    // The cursor there is at its edge.
    const QPoint place = letter.center().toPoint() + QPoint(1, 0);
    return targetAt(item, place) == target ? std::optional<QPoint>(place) : std::nullopt;
}

// A place in the middle of the first part of a link to there; null when it is not shown.
std::optional<QPoint> placeOfLink(QObject *item, const QString &target)
{
    // To look for it takes long in a long text.
    if (const std::optional<QPoint> begin = beginOfLink(item, target))
        return middleOfLink(item, *begin, target);
    const int width = item->property("width").toInt();
    const int height = item->property("height").toInt();
    for (int y = lookedAtDown / 2; y < height; y += lookedAtDown) {
        for (int x = lookedAtAcross / 2; x < width; x += lookedAtAcross) {
            if (targetAt(item, {x, y}) == target)
                return middleOfLink(item, {x, y}, target);
        }
    }
    return std::nullopt;
}

// Moves what is around the item until the place in it is in sight.
void scrollTo(const QObject *item, const QPoint &place)
{
    const SceneAccess &access = *SceneAccess::self();
    for (QObject *around = access.parentOf(item); around; around = access.parentOf(around)) {
        const QPoint there = access.fromWindow(around, access.toWindow(item, place));
        const double height = around->property("height").toDouble();
        if (!isScrolling(around) || (there.y() >= 0 && there.y() < height))
            continue;
        const double last = around->property("contentHeight").toDouble() - height;
        const double wanted = around->property("contentY").toDouble() + there.y() - height / 2;
        around->setProperty("contentY", std::max(0.0, std::min(last, wanted)));
    }
}

} // namespace

QVariantList sceneLinkAt(QObject *item, const QPoint &windowPlace)
{
    const bool isEditor = item->inherits("QQuickTextEdit");
    if (!isText(item) || (isEditor && !isConnected(item, "linkActivated")))
        return {};
    const QString target = targetAt(item, SceneAccess::self()->fromWindow(item, windowPlace));
    const std::vector<TextLink> links =
        target.isEmpty() ? std::vector<TextLink>() : linksOfText(item);
    const auto link = std::find_if(links.begin(), links.end(), [&target](const TextLink &each) {
        return each.target == target;
    });
    if (link == links.end())
        return {};
    const QVariantList byText{link->text};
    return SceneLinkItem(item, ItemSelector::of(byText)).error().isEmpty()
               ? byText
               : QVariantList{static_cast<int>(link - links.begin()), 0};
}

bool SceneLinkItem::isPossible(const QObject *item)
{
    return isText(item) && !linksOfText(item).empty();
}

SceneLinkItem::SceneLinkItem(QObject *owner, const ItemSelector &selector)
    : m_owner(owner)
{
    const std::vector<TextLink> links = linksOfText(owner);
    const int index = indexAmong(selector, textsOf(links), selector.row, &m_error);
    if (index < 0)
        return;
    m_text = links[static_cast<std::size_t>(index)].text;
    m_target = links[static_cast<std::size_t>(index)].target;
}

QVariantMap SceneLinkItem::properties() const
{
    return {{QStringLiteral("target"), m_target}};
}

QString SceneLinkItem::whyBlocked() const
{
    return m_owner ? Morvex::whyBlocked(m_owner.data())
                   : QStringLiteral("the item no longer exists");
}

void SceneLinkItem::reveal(InputSequence &input)
{
    input.add([owner = m_owner, target = m_target] {
        const auto place = owner ? placeOfLink(owner, target) : std::nullopt;
        if (place)
            scrollTo(owner, *place);
        return QString();
    });
}

QRect SceneLinkItem::place() const
{
    const auto place = m_owner ? placeOfLink(m_owner, m_target) : std::nullopt;
    return place ? QRect(*place, QSize(1, 1)) : QRect();
}

} // namespace Morvex
