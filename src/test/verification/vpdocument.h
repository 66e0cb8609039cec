#pragma once

#include <QByteArray>
#include <QString>

class QDomDocument;
class QDomElement;
class QDomNode;

namespace Morvex {

/// Parses XML from outside, in whatever encoding it is. Returns an error text, empty on success.
[[nodiscard]] QString parseDocument(const QByteArray &xml, QDomDocument *document);
[[nodiscard]] QString parseDocument(const QString &xml, QDomDocument *document);

/// In one line, without blanks between the tags.
QString nodeText(const QDomNode &node);

/// Whether a verification says itself that it is expected to fail.
bool hasExpectedFailure(const QDomElement &verification);

} // namespace Morvex
