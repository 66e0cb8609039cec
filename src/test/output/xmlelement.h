#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QLatin1String>
#include <QString>

#include <vector>

namespace Morvex {

/// An element of a report on its way to the file, with its attributes in the order of writing. Its
/// content is either text or children. The names are string literals.
class MORVEX_EXPORT XmlElement
{
public:
    explicit XmlElement(QLatin1String name);

    XmlElement &addAttribute(QLatin1String name, const QString &value);
    XmlElement &addAttribute(QLatin1String name, int value);
    XmlElement &addChild(XmlElement child);
    XmlElement &setText(const QString &text);
    XmlElement &setCData(const QString &text);

    /// Appends the whole element as UTF-8, each element that has no text on a line of its own,
    /// after
    /// @p indent blanks and @p step more for each level.
    void append(QByteArray &out, int indent, int step) const;

    void appendOpenTag(QByteArray &out) const;
    void appendCloseTag(QByteArray &out) const;

private:
    struct Attribute
    {
        QLatin1String name;
        QString value;
    };

    void appendStartOfTag(QByteArray &out) const;
    void appendText(QByteArray &out) const;
    void appendChildren(QByteArray &out, int indent, int step) const;

    QLatin1String m_name;
    std::vector<Attribute> m_attributes;
    std::vector<XmlElement> m_children;
    QString m_text;
    bool m_isCData = false;
};

enum WriteMode { OpenTag, CloseTag, WholeElement };

/// Appends a part of @p element, as lines of UTF-8, for reports that grow with the run. An open tag
/// raises @p indent by @p step for what follows, a close tag lowers it first.
MORVEX_EXPORT void dumpElementToStream(const XmlElement &element, WriteMode mode,
                                       QByteArray *stream, int &indent, int step = 4);

} // namespace Morvex
