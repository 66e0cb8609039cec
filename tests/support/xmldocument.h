#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

namespace MorvexTest {

/// An XML document as libxml2 reads it. Names in paths are without a namespace.
class XmlDocument
{
public:
    explicit XmlDocument(const QByteArray &text);
    ~XmlDocument();

    bool isWellFormed() const;
    /// The text of the first node that the path selects, or the value of the expression.
    QString value(const char *xpath) const;
    QStringList values(const char *xpath) const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace MorvexTest
