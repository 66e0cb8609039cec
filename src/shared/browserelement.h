#pragma once

#include "morvex_export.h"
#include "shared/stylecheckresult.h"
#include "shared/uiabstraction/elementgeometry.h"

#include <QImage>
#include <QList>
#include <QMap>
#include <QRect>
#include <QString>
#include <QStringList>

class TiXmlDocument;
class TiXmlElement;

namespace Morvex {

/// An element of a snapshot or of coverage data, read from XML. Owns its children.
///
/// White space in texts and values is kept as it is, but a text of white space alone is empty.
class MORVEX_EXPORT BrowserElement
{
public:
    class MORVEX_EXPORT Id
    {
    public:
        Id() = default;
        explicit Id(const QString &id);

        const QString &toString() const { return m_id; }
        bool isEmpty() const { return m_id.isEmpty(); }
        bool operator<(const Id &other) const { return m_id < other.m_id; }
        // Without a look at the texts where that is possible.
        bool operator==(const Id &other) const
        {
            return m_hash == other.m_hash && (m_id.isSharedWith(other.m_id) || m_id == other.m_id);
        }
        bool operator!=(const Id &other) const { return !(*this == other); }
        friend uint qHash(const Id &id) { return id.m_hash; }

    private:
        QString m_id;
        uint m_hash = 0;
    };

    /// Becomes the last child of @p parent, unless that is null.
    BrowserElement(BrowserElement *parent, const QString &name);
    /// Takes the element off its parent.
    ~BrowserElement();

    BrowserElement(const BrowserElement &) = delete;
    BrowserElement &operator=(const BrowserElement &) = delete;

    QString name() const { return m_name; }
    QString realName() const { return m_realName; }
    void setRealName(const QString &name) { m_realName = name; }
    QString symbolicName() const { return m_symbolicName; }
    void setSymbolicName(const QString &name) { m_symbolicName = name; }
    QStringList superClasses() const { return m_superClasses; }
    void setSuperClasses(const QStringList &classes) { m_superClasses = classes; }
    const Id &id() const { return m_id; }
    void setId(const Id &id) { m_id = id; }
    QString type() const { return m_type; }
    void setType(const QString &type) { m_type = type; }
    const QString &className() const { return m_className; }
    void setClassName(const QString &name) { m_className = name; }
    const QString &simplifiedType() const { return m_simplifiedType; }
    void setSimplifiedType(const QString &type) { m_simplifiedType = type; }
    QString nameSpace() const { return m_nameSpace; }
    void setNameSpace(const QString &nameSpace) { m_nameSpace = nameSpace; }
    const QMap<QString, QString> &properties() const { return m_properties; }
    void setProperties(const QMap<QString, QString> &properties) { m_properties = properties; }
    const QMap<QString, QString> &identifyingProperties() const { return m_identifyingProperties; }
    void setIdentifyingProperties(const QMap<QString, QString> &properties)
    {
        m_identifyingProperties = properties;
    }
    QImage image() const { return m_image; }
    void setImage(const QImage &image) { m_image = image; }
    QString text() const { return m_text; }
    void setText(const QString &text) { m_text = text; }
    const UIAbstraction::ElementGeometry &geometry() const { return m_geometry; }
    void setGeometry(const UIAbstraction::ElementGeometry &geometry) { m_geometry = geometry; }
    bool isTopLevel() const { return m_isTopLevel; }
    void setTopLevel(bool isTopLevel) { m_isTopLevel = isTopLevel; }

    BrowserElement *parent() const { return m_parent; }
    const QList<BrowserElement *> &children() const { return m_children; }
    /// Deletes all children.
    void clear();
    /// Takes @p child over as the last one, from another parent too.
    void attach(BrowserElement *child);
    /// Leaves the parent; the caller then owns the element.
    void detach();
    /// False for the element itself.
    bool isDescendantOf(const BrowserElement *other) const;
    /// What to show for the element: its text, or else its type, its class, its name.
    QString displayName() const;

    /// On the screen; invalid when the element has no valid geometry, or one relative to nothing.
    QRect absoluteGeometry() const;
    /// As it is stored, when it is valid.
    QRect relativeGeometry() const;

    /// 0 for elements that can't be the same, the larger the more alike.
    int similarityTo(const BrowserElement *other) const;
    /// Takes @p other over: as a new child, or by adding its coverage to that of the most similar
    /// child and so on down.
    void merge(BrowserElement *other);
    /// Reads each file and merges what is in it into this element. False with @p error at the
    /// first file that can't be read.
    [[nodiscard]] bool mergeXmlFiles(const QStringList &fileNames, QString &error);

    QStringList coverageNames() const { return m_coverage.keys(); }
    /// -1 for an unknown name.
    int coverage(const QString &name) const { return m_coverage.value(name, -1); }
    void setCoverage(const QString &name, int value);
    /// How many kinds of events there could have been, here or also below.
    int coverageExpected(bool recursive) const;
    /// How many of these there were.
    int coverageActual(bool recursive) const;
    /// 100 when nothing is expected.
    double coveragePercentage(bool recursive) const;
    /// Forgets the sums of this element and all above it.
    void clearCache();

    QList<StyleCheckResult> styleCheckResults() const { return m_styleCheckResults; }
    void addStyleCheckResult(const StyleCheckResult &result) { m_styleCheckResults += result; }
    /// Whether all results have passed.
    bool styleValid() const;

    // Each adds the elements to @p root. False with a text in @p error, which may be null; root
    // then holds what was read so far.

    [[nodiscard]] static bool readXML(BrowserElement *root, const QByteArray &xml, QString *error);
    [[nodiscard]] static bool readXMLFile(BrowserElement *root, const QString &fileName,
                                          QString *error);
    /// The white space of texts is what the document was parsed with.
    [[nodiscard]] static bool convertXML(BrowserElement *root, const TiXmlDocument &document,
                                         QString *error);
    [[nodiscard]] static bool readUiElement(BrowserElement *root, const TiXmlElement *element,
                                            QString *error);

private:
    BrowserElement *mostSimilarChild(const BrowserElement *other) const;
    void addCoverage(const BrowserElement &other);

    QString m_name;
    QString m_realName;
    QString m_symbolicName;
    QStringList m_superClasses;
    Id m_id;
    QString m_type;
    QString m_className;
    QString m_simplifiedType;
    QString m_nameSpace;
    QMap<QString, QString> m_properties;
    QMap<QString, QString> m_identifyingProperties;
    QImage m_image;
    QString m_text;
    UIAbstraction::ElementGeometry m_geometry;
    bool m_isTopLevel = false;
    BrowserElement *m_parent = nullptr;
    QList<BrowserElement *> m_children;
    mutable int m_expectedCache = -1;
    mutable int m_actualCache = -1;
    QMap<QString, int> m_coverage;
    QList<StyleCheckResult> m_styleCheckResults;
};

} // namespace Morvex
