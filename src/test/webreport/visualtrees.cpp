#include "test/webreport/visualtrees.h"

#include "shared/files/writefile.h"
#include "test/verification/vpdocument.h"
#include "test/webreport/visualdifferences.h"

#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Morvex {
namespace {

const qint64 maxPointSize = 256 * 1024 * 1024;

using Results = VisualDifferences::Results;

// What the results say of elements of either tree.
class Marks
{
public:
    Marks(const Results &results, const BrowserElement *stored, const BrowserElement *live,
          VisualDifferences *differences)
        : m_searched{{stored, &VisualDifferences::ofMissing},
                     {live, &VisualDifferences::ofAdditional}}
    {
        for (const TitanCompare &outcome : results) {
            const QJsonArray found = differences->between(outcome);
            m_differences.insert(outcome.expected, found);
            m_differences.insert(outcome.actual, found);
            if (outcome.failed & TitanCompare::HierarchyCheck) {
                m_searched.insert(outcome.expected, &VisualDifferences::ofMissing);
                m_searched.insert(outcome.actual, &VisualDifferences::ofAdditional);
            }
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
    using OfUnmatched = QJsonArray (*)(const BrowserElement *);

    QJsonArray differencesAt(const BrowserElement *element) const
    {
        const auto compared = m_differences.constFind(element);
        if (compared != m_differences.constEnd())
            return *compared;
        const OfUnmatched ofUnmatched = m_searched.value(element->parent());
        return ofUnmatched ? ofUnmatched(element) : QJsonArray();
    }

    QHash<const BrowserElement *, QJsonArray> m_differences;
    // The elements below which each one was to have a counterpart.
    QHash<const BrowserElement *, OfUnmatched> m_searched;
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

// Those of the object come first. The name in a message may be another than in the file, since a
// message can't hold every one.
QList<QDomElement> verificationsOf(const QDomDocument &document, const QString &object)
{
    QList<QDomElement> ofObject;
    QList<QDomElement> others;
    const QString tag = QStringLiteral("Verification");
    QDomElement verification = document.documentElement().firstChildElement(tag);
    for (; !verification.isNull(); verification = verification.nextSiblingElement(tag)) {
        const bool isOfObject = verification.attribute(QStringLiteral("object")) == object;
        (isOfObject ? ofObject : others) += verification;
    }
    return ofObject + others;
}

QJsonObject comparedTrees(const QString &pointFile, const QString &object,
                          const QString &snapshotFile)
{
    QDomDocument document;
    QString error = readPoint(pointFile, &document);
    if (!error.isEmpty())
        return unreadablePoint(pointFile, error);
    BrowserElement live(nullptr, QStringLiteral("live"));
    if (!BrowserElement::readXMLFile(&live, snapshotFile, &error))
        return failure(
            QStringLiteral("The snapshot '%1' could not be read: %2").arg(snapshotFile, error));
    for (const QDomElement &verification : verificationsOf(document, object)) {
        VisualBody body;
        if (!body.read(verification))
            return unreadablePoint(pointFile, QStringLiteral("The tree in it can't be read."));
        Results results;
        if (body.compare(&live, &results))
            continue;
        VisualDifferences differences(&body, &results);
        const Marks marks(results, &body.stored, &live, &differences);
        const auto below = [&marks](const BrowserElement *root) {
            return marks.node(root).value(QStringLiteral("children")).toArray();
        };
        return {{QStringLiteral("expected"), below(&body.stored)},
                {QStringLiteral("actual"), below(&live)},
                {QStringLiteral("pictures"), differences.pictures()}};
    }
    return failure(QStringLiteral("The verification point and the snapshot do not differ."));
}

} // namespace

bool writeVisualTrees(const QString &pointFile, const QString &object, const QString &snapshotFile)
{
    const QByteArray json = QJsonDocument(comparedTrees(pointFile, object, snapshotFile))
                                .toJson(QJsonDocument::Compact);
    return writeFileSafely(snapshotFile + QStringLiteral(".js"),
                           "morvexVisualTrees(" + json + ");\n")
               .outcome == FileWriteResult::Written;
}

} // namespace Morvex
