#pragma once

#include <QRect>
#include <QString>

#include <vector>

class QObject;
class QTextDocument;

namespace Morvex {

/// A link in a text, and where that has the first part of it that looks the same.
struct TextLink
{
    QString text;
    QString target;
    int start = 0;
    int length = 0;
};

std::vector<TextLink> linksIn(const QTextDocument &document);

/// A link that is shown.
struct Link
{
    QString text;
    /// In what shows the text; that of the first line of a link that is broken.
    QRect place;
};

/// The links of a label or a text browser, in the order of the text. None for any other object.
std::vector<Link> linksOf(const QObject *object);

/// The index of the link there; negative when there is none.
int linkAt(const QObject *object, const QPoint &place);

} // namespace Morvex
