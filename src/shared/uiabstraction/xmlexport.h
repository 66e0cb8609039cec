#pragma once

#include "morvex_export.h"

#include <QHash>
#include <QList>
#include <QString>

class QIODevice;
class QXmlStreamWriter;

namespace Morvex::UIAbstraction {

class UIElement;

/// Writes trees of elements as XML. What XML can't hold is U+FFFD there. Elements below the deepest
/// level are left out, with a warning.
class MORVEX_EXPORT XmlExporter
{
public:
    /// The elements of @p dump, which the exporter owns.
    explicit XmlExporter(const QByteArray &dump);
    /// Elements of the caller, which outlive the exporter.
    explicit XmlExporter(const QList<UIElement *> &elements);
    ~XmlExporter();

    XmlExporter(const XmlExporter &) = delete;
    XmlExporter &operator=(const XmlExporter &) = delete;

    /// Whether transparent nodes give their place to their children. On by default.
    void setSkipTransparentNodes(bool skip) { m_skipsTransparentNodes = skip; }
    /// Whether nothing below a subgraph-transparent node is written. On by default.
    void setHonourSubgraphTransparency(bool honour) { m_honoursSubgraphTransparency = honour; }

    /// A whole document. False when it could not be written whole; errorText says why.
    bool toXml(QIODevice *device);
    /// The same. A file that was there is left as it was when writing fails.
    bool toXml(const QString &fileName);
    QString errorText() const { return m_error; }

    // For embedding in a document of the caller's: whether it could be written the caller's writer
    // knows.

    /// The element `ui` with all elements.
    void toXmlFragment(QXmlStreamWriter *writer);
    /// One element with what is below it.
    void toXmlStream(const UIElement *element, QXmlStreamWriter *writer);

private:
    void writeLevel(const UIElement &element, int level);
    void writeElement(const UIElement &element, int level);
    void writeAttributes(const UIElement &element);
    void writeNames(const UIElement &element);
    void writeImage(const UIElement &element);
    void writeSuperTypes(const UIElement &element);
    void writeAbstractProperties(const UIElement &element);
    void writeGeometry(const UIElement &element);
    void writeCoverage(const UIElement &element);
    void writeProperties(const QString &tag, const QHash<QString, QString> &properties);
    void writeChildren(const UIElement &element, int level);
    void writeText(const QString &tag, const QString &text);
    void writeOptionalText(const QString &tag, const QString &text);
    void writeAttribute(const QString &name, const QString &value);

    QList<UIElement *> m_elements;
    bool m_ownsElements;
    QString m_error;
    bool m_skipsTransparentNodes = true;
    bool m_honoursSubgraphTransparency = true;
    QXmlStreamWriter *m_writer = nullptr;
};

} // namespace Morvex::UIAbstraction
