#pragma once

#include "shared/browserelement.h"
#include "shared/uiabstraction/pictures/loadimage.h"

#include <QString>

class TiXmlElement;
class TiXmlNode;

namespace Morvex {

/// Reads one document of elements. Its pictures have no more pixels together than one may have.
class UiReader
{
public:
    /// @p error may be null.
    explicit UiReader(QString *error);

    /// Null stands for a document without any element.
    bool readUi(BrowserElement *root, const TiXmlElement *ui);

    static void setError(QString *error, const QString &text);

private:
    bool fail(const QString &text);
    bool checkXmlElement(const TiXmlElement *element, const char *name);
    bool readElements(BrowserElement *parent, const TiXmlElement &container, int level);
    bool readElement(BrowserElement *parent, const TiXmlElement &xml, int level);
    bool readChild(BrowserElement *element, const TiXmlElement &xml, int level);
    bool readSuperClasses(BrowserElement *element, const TiXmlElement &xml);
    bool readAbstractProperties(BrowserElement *element, const TiXmlElement &xml);
    bool readGeometry(BrowserElement *element, const TiXmlElement &xml);
    bool readProperties(const TiXmlElement &xml, QMap<QString, QString> *properties);
    bool readCoverage(BrowserElement *element, const TiXmlElement &xml);
    void readImage(BrowserElement *element, const TiXmlElement &xml);

    QString *m_error;
    qint64 m_pixelsLeft = maxPicturePixels;
};

} // namespace Morvex
