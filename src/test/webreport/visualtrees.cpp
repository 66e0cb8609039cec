#include "test/webreport/visualtrees.h"

#include "shared/writefile.h"
#include "test/verification/visualbody.h"
#include "test/verification/vpdocument.h"

#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

namespace Morvex {
namespace {

const QLatin1String identifyingKind("identifying");
const QLatin1String contentKind("content");
const QLatin1String geometryKind("geometry");
const QLatin1String structureKind("structure");
const QLatin1String pictureKind("picture");

const qint64 maxPointSize = 256 * 1024 * 1024;

using Results = QMap<BrowserElement::Id, TitanCompare>;
using Properties = QMap<QString, QString>;

QJsonObject difference(QLatin1String kind, const QString &name = {}, const QString &expected = {},
                       const QString &actual = {})
{
    return {{QStringLiteral("kind"), kind},
            {QStringLiteral("name"), name},
            {QStringLiteral("expected"), expected},
            {QStringLiteral("actual"), actual}};
}

void addProperties(QLatin1String kind, const QStringList &names, const Properties &expected,
                   const Properties &actual, QJsonArray *differences)
{
    for (const QString &name : names)
        differences->append(difference(kind, name, expected.value(name), actual.value(name)));
}

QString geometryText(const BrowserElement *element)
{
    const UIAbstraction::ElementGeometry &geometry = element->geometry();
    if (!geometry.rect().isValid())
        return QStringLiteral("nowhere");
    const QPoint place = geometry.rect().topLeft();
    return QStringLiteral("%1, %2, %3 x %4")
        .arg(QString::number(place.x()), QString::number(place.y()),
             QString::number(geometry.width()), QString::number(geometry.height()));
}

QJsonArray differencesOf(const TitanCompare &outcome)
{
    QJsonArray differences;
    addProperties(identifyingKind, outcome.identifyingFailures,
                  outcome.expected->identifyingProperties(),
                  outcome.actual->identifyingProperties(), &differences);
    addProperties(contentKind, outcome.contentFailures, outcome.expected->properties(),
                  outcome.actual->properties(), &differences);
    if (outcome.failed & TitanCompare::GeometryCheck)
        differences.append(
            difference(geometryKind, outcome.geometryFailures.join(QStringLiteral(", ")),
                       geometryText(outcome.expected), geometryText(outcome.actual)));
    if (outcome.failed & TitanCompare::ScreenshotCheck)
        differences.append(difference(pictureKind));
    return differences;
}

// What the results say of elements of either tree.
class Marks
{
public:
    Marks(const Results &results, const BrowserElement *stored, const BrowserElement *live)
    {
        // The roots have each other.
        m_searched = {stored, live};
        for (const TitanCompare &outcome : results) {
            m_outcomes.insert(outcome.expected, &outcome);
            m_outcomes.insert(outcome.actual, &outcome);
            if (outcome.failed & TitanCompare::HierarchyCheck)
                m_searched << outcome.expected << outcome.actual;
        }
    }

    QJsonObject node(const BrowserElement *element) const
    {
        QJsonArray children;
        for (const BrowserElement *child : element->children())
            children.append(node(child));
        QJsonObject object{{QStringLiteral("name"), element->displayName()},
                           {QStringLiteral("class"), element->className()}};
        const QJsonArray differences = differencesAt(element);
        if (!differences.isEmpty())
            object.insert(QStringLiteral("differences"), differences);
        if (!children.isEmpty())
            object.insert(QStringLiteral("children"), children);
        return object;
    }

private:
    QJsonArray differencesAt(const BrowserElement *element) const
    {
        if (const TitanCompare *outcome = m_outcomes.value(element))
            return differencesOf(*outcome);
        // One without a counterpart, where such a one was looked for.
        if (m_searched.contains(element->parent()))
            return {difference(structureKind)};
        return {};
    }

    QHash<const BrowserElement *, const TitanCompare *> m_outcomes;
    QSet<const BrowserElement *> m_searched;
};

QJsonObject failure(const QString &text)
{
    return {{QStringLiteral("error"), text}};
}

// Returns an error text, empty on success.
[[nodiscard]] QString readPoint(const QString &path, QDomDocument *document)
{
    // Pipes and devices have no end.
    const QFileInfo info(path);
    if (info.exists() && (!info.isFile() || info.size() > maxPointSize))
        return QStringLiteral("It is not a file of at most 256 MB.");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    return parseDocument(file.readAll(), document);
}

QJsonObject unreadablePoint(const QString &path, const QString &error)
{
    return failure(
        QStringLiteral("The verification point '%1' could not be read: %2").arg(path, error));
}

QJsonObject comparedTrees(const QString &pointFile, const QString &snapshotFile)
{
    QDomDocument document;
    QString error = readPoint(pointFile, &document);
    if (!error.isEmpty())
        return unreadablePoint(pointFile, error);
    BrowserElement live(nullptr, QStringLiteral("live"));
    if (!BrowserElement::readXMLFile(&live, snapshotFile, &error))
        return failure(
            QStringLiteral("The snapshot '%1' could not be read: %2").arg(snapshotFile, error));
    const QString tag = QStringLiteral("Verification");
    QDomElement verification = document.documentElement().firstChildElement(tag);
    for (; !verification.isNull(); verification = verification.nextSiblingElement(tag)) {
        VisualBody body;
        if (!body.read(verification))
            return unreadablePoint(pointFile, QStringLiteral("The tree in it can't be read."));
        Results results;
        if (body.compare(&live, &results))
            continue;
        const Marks marks(results, &body.stored, &live);
        const auto below = [&marks](const BrowserElement *root) {
            return marks.node(root).value(QStringLiteral("children")).toArray();
        };
        return {{QStringLiteral("expected"), below(&body.stored)},
                {QStringLiteral("actual"), below(&live)}};
    }
    return failure(QStringLiteral("The verification point and the snapshot do not differ."));
}

} // namespace

bool writeVisualTrees(const QString &pointFile, const QString &snapshotFile)
{
    const QByteArray json =
        QJsonDocument(comparedTrees(pointFile, snapshotFile)).toJson(QJsonDocument::Compact);
    return writeFileSafely(snapshotFile + QStringLiteral(".js"),
                           "morvexVisualTrees(" + json + ");\n")
               .outcome == FileWriteResult::Written;
}

} // namespace Morvex
