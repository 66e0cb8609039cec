#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

struct _xmlDoc;

namespace MorvexTest {

/// A document as libxml2 reads it, a reader that has no code in common with our writers.
///
/// In expressions the prefix "ss" stands for the spreadsheet namespace and "x2" for that of xml2.
class XmlDocument
{
public:
    enum Mode {
        Strict,
        /// Closes what is open at the end, as a reader of a crashed run's file would.
        Recover,
        /// Names in expressions are without a namespace.
        NoNamespaces
    };

    explicit XmlDocument(const QByteArray &content, Mode mode = Strict);

    /// Empty when the document is well-formed.
    QString error() const { return m_error; }

    int count(const char *expression) const;
    /// Of any expression; that of nodes is the text of the first, empty without one.
    QString value(const char *expression) const;
    QString text(const char *expression) const { return value(expression); }
    QStringList texts(const char *expression) const;
    /// "name=value" of the first node that is found, in the order of the file.
    QStringList attributes(const char *expression) const;

    /// What is wrong by the schema in this file; empty when nothing is.
    QString validate(const QString &schemaFile) const;

private:
    std::shared_ptr<_xmlDoc> m_document;
    QString m_error;
};

} // namespace MorvexTest
