#include "qtbackend/links.h"

#include <QAbstractTextDocumentLayout>
#include <QLabel>
#include <QScrollBar>
#include <QStyle>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextLayout>

namespace Morvex {
namespace {

// A label keeps it for itself.
QTextDocument *documentOf(const QObject *object)
{
    if (const auto *browser = qobject_cast<const QTextBrowser *>(object))
        return browser->document();
    const auto *label = qobject_cast<const QLabel *>(object);
    const bool hasLinks =
        label && label->textInteractionFlags().testFlag(Qt::LinksAccessibleByMouse);
    return hasLinks ? label->findChild<QTextDocument *>() : nullptr;
}

// Where a label has its text, as the toolkit computes it.
QPoint originIn(const QLabel &label, const QTextDocument &document)
{
    const int margin = label.margin();
    QRect area = label.contentsRect().adjusted(margin, margin, -margin, -margin);
    const int align = QStyle::visualAlignment(label.layoutDirection(), label.alignment());
    int indent = label.indent();
    if (indent < 0 && label.frameWidth() > 0)
        indent = label.fontMetrics().horizontalAdvance(QLatin1Char('x')) / 2 - margin;
    if (indent > 0 && (align & Qt::AlignLeft))
        area.setLeft(area.left() + indent);
    if (indent > 0 && (align & Qt::AlignTop))
        area.setTop(area.top() + indent);
    const int free = qMax(area.height() - qRound(document.size().height()), 0);
    const bool isMiddle = align & Qt::AlignVCenter;
    const bool isBottom = align & Qt::AlignBottom;
    return area.topLeft() + QPoint(0, isMiddle ? free / 2 : isBottom ? free : 0);
}

QPoint originIn(const QObject *object, const QTextDocument &document)
{
    if (const auto *label = qobject_cast<const QLabel *>(object))
        return originIn(*label, document);
    const auto *browser = static_cast<const QTextBrowser *>(object);
    return {-browser->horizontalScrollBar()->value(), -browser->verticalScrollBar()->value()};
}

QRect placeOf(const QTextDocument &document, const QTextBlock &block, int start, int length)
{
    const QTextLine line = block.layout()->lineForTextPosition(start - block.position());
    if (!line.isValid())
        return {};
    const int first = start - block.position();
    const int last = qMin(first + length, line.textStart() + line.textLength());
    const qreal left = line.cursorToX(first);
    const qreal right = line.cursorToX(last);
    const QPointF corner = document.documentLayout()->blockBoundingRect(block).topLeft();
    return QRectF(qMin(left, right), line.y(), qAbs(right - left), line.height())
        .translated(corner)
        .toRect();
}

} // namespace

std::vector<TextLink> linksIn(const QTextDocument &document)
{
    std::vector<TextLink> links;
    QString last;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        last.clear();
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment part = it.fragment();
            const QString target = part.charFormat().anchorHref();
            // A part of a link may look different.
            if (!target.isEmpty() && target == last)
                links.back().text += part.text();
            else if (!target.isEmpty())
                links.push_back({part.text(), target, part.position(), part.length()});
            last = target;
        }
    }
    return links;
}

std::vector<Link> linksOf(const QObject *object)
{
    std::vector<Link> links;
    const QTextDocument *document = documentOf(object);
    if (!document)
        return links;
    const QPoint origin = originIn(object, *document);
    for (const TextLink &link : linksIn(*document)) {
        const QTextBlock block = document->findBlock(link.start);
        links.push_back(
            {link.text, placeOf(*document, block, link.start, link.length).translated(origin)});
    }
    return links;
}

int linkAt(const QObject *object, const QPoint &place)
{
    const std::vector<Link> links = linksOf(object);
    for (std::size_t i = 0; i < links.size(); ++i) {
        if (links[i].place.contains(place))
            return static_cast<int>(i);
    }
    return -1;
}

} // namespace Morvex
