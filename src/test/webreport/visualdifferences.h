#pragma once

#include "test/verification/visualbody.h"

#include <QImage>
#include <QJsonArray>

namespace Morvex {

/// What the page shows of elements that differ, each with what was expected and what was there.
class VisualDifferences
{
public:
    using Results = QMap<BrowserElement::Id, TitanCompare>;

    /// Neither is owned.
    VisualDifferences(const VisualBody *body, const Results *results)
        : m_body(*body)
        , m_results(*results)
    {
    }

    /// Empty when nothing differs but below.
    QJsonArray between(const TitanCompare &outcome);
    /// Of an expected element without a counterpart.
    static QJsonArray ofMissing(const BrowserElement *element);
    /// Of one that nothing expects.
    static QJsonArray ofAdditional(const BrowserElement *element);

    /// PNG files as base64, to which the differences of pictures refer by index.
    QJsonArray pictures() const { return m_pictures; }

private:
    void addProperties(QLatin1String kind, const QStringList &names,
                       const QMap<QString, QString> &expected, const QMap<QString, QString> &actual,
                       const QMap<QString, TitanPropertyCheck> &checks, QJsonArray *differences);
    void addGeometry(const TitanCompare &outcome, QJsonArray *differences);
    void addPictures(const TitanCompare &outcome, QJsonArray *differences);
    QJsonValue addPicture(const QImage &image);
    bool hasMovedChild(const TitanCompare &outcome) const;

    const VisualBody &m_body;
    const Results &m_results;
    QJsonArray m_pictures;
    qint64 m_pixels = 0;
};

} // namespace Morvex
