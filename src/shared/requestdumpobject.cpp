#include "shared/requestdumpobject.h"

#include "objectmodel/inspector.h"
#include "shared/environment.h"
#include "shared/settings.h"
#include "shared/uiabstraction/uielement.h"
#include "shared/uiabstraction/xmlexport.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace Morvex {
namespace {

const char dumpFollows = char(0xc5);

struct SnapshotKind
{
    QString filterPattern;
    QString userFilterPattern;
    QString noFiltersText;
};

QByteArray failure(QString *error, const QString &text)
{
    if (error)
        *error = text;
    return {};
}

QString installationPrefix()
{
    return QString::fromStdString(Environment::getVariable("MORVEX_PREFIX"));
}

QStringList filesIn(const QString &dirName, const QString &pattern)
{
    const QDir dir(dirName);
    QStringList paths;
    const QStringList names = dir.entryList({pattern}, QDir::Files, QDir::Name);
    for (const QString &name : names)
        paths += dir.filePath(name);
    return paths;
}

QStringList toolkitFilters(const QString &prefix, const QString &pattern)
{
    const QDir toolkits(prefix + QStringLiteral("/lib/toolkits"));
    QStringList paths;
    const QStringList names = toolkits.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : names)
        paths += filesIn(toolkits.filePath(name) + QStringLiteral("/etc"), pattern);
    return paths;
}

// Later filters win over earlier ones: those of the user come after all others.
QStringList filterFiles(const SnapshotKind &kind)
{
    const QString prefix = installationPrefix();
    const QString installed = prefix + QStringLiteral("/etc");
    return filesIn(installed, kind.filterPattern) + toolkitFilters(prefix, kind.filterPattern) +
           filesIn(Settings::morvexSettingsDir(), kind.userFilterPattern) +
           filesIn(installed, kind.userFilterPattern);
}

QVariantList readFilterFiles(const QStringList &paths, QString *error)
{
    QVariantList filters;
    for (const QString &path : paths) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            *error = QStringLiteral("%1: %2").arg(path, file.errorString());
            return {};
        }
        const QByteArray content = file.readAll();
        if (content.isEmpty()) {
            *error = QStringLiteral("Unable to read content of %1, is file empty?").arg(path);
            return {};
        }
        filters += content;
    }
    return filters;
}

QString errorTextOf(const QByteArray &answer)
{
    const int end = answer.indexOf('\0');
    return QString::fromUtf8(end < 0 ? answer : answer.left(end));
}

QByteArray callDumpObject(const SharedPtr<Object> &object, const QVariantList &filters,
                          QString *error)
{
    if (!object)
        return failure(error, QStringLiteral("Requested object not found"));
    QByteArray answer;
    if (Inspector *inspector = Inspector::self()) {
        const QVariantList arguments = QVariantList{object->id()} + filters;
        answer =
            inspector->callFunction(QStringLiteral("dumpObject"), arguments, nullptr).toByteArray();
    }
    return dumpOfAnswer(answer, error);
}

// Applications know the filters by their numbers only.
QString withFileOfFilter(const QString &text, const QStringList &paths)
{
    const QRegularExpression start(QStringLiteral("^Filter (\\d+),"));
    const int number = start.match(text).captured(1).toInt();
    if (number < 1 || number > paths.size())
        return text;
    const QString shown = QStringLiteral("Filter %1").arg(number);
    return shown + QStringLiteral(" (%1)").arg(paths.at(number - 1)) + text.mid(shown.size());
}

QByteArray requestSnapshot(const SharedPtr<Object> &object, const SnapshotKind &kind,
                           const QByteArray &extraFilter, QString *error)
{
    const QStringList paths = filterFiles(kind);
    QString readError;
    QVariantList filters = readFilterFiles(paths, &readError);
    if (!readError.isEmpty())
        return failure(error, readError);
    if (!extraFilter.isEmpty())
        filters += extraFilter;
    if (filters.isEmpty())
        return failure(error, kind.noFiltersText);
    const QByteArray dump = callDumpObject(object, filters, error);
    if (dump.isEmpty() && error)
        *error = withFileOfFilter(*error, paths);
    return dump;
}

} // namespace

QByteArray requestObjectSnapshot(SharedPtr<Object> object, const QByteArray &extraFilter,
                                 QString *error)
{
    const SnapshotKind kind{QStringLiteral("*_snapshot_filter.xml"),
                            QStringLiteral("*_snapshot_user_filter.xml"),
                            QStringLiteral("No filters found for object snapshot")};
    return requestSnapshot(object, kind, extraFilter, error);
}

QByteArray requestObjectSnapshot(const QString &objectName, const QByteArray &extraFilter,
                                 QString *error)
{
    Inspector *inspector = Inspector::self();
    const SharedPtr<Object> object =
        inspector ? inspector->findObject(objectName, nullptr) : SharedPtr<Object>();
    if (!object)
        return failure(error, QStringLiteral("object %1 not found").arg(objectName));
    return requestObjectSnapshot(object, extraFilter, error);
}

QByteArray requestObjectSnapshotForVisualVP(SharedPtr<Object> object, QString *error)
{
    const SnapshotKind kind{QStringLiteral("*_visualvp_filter.xml"),
                            QStringLiteral("*_visualvp_user_filter.xml"),
                            QStringLiteral("No filters found for visual VP")};
    return requestSnapshot(object, kind, QByteArray(), error);
}

QByteArray dumpOfAnswer(const QByteArray &answer, QString *error)
{
    if (answer.isEmpty())
        return failure(error, QStringLiteral("Request for object snapshot returned no data"));
    const QByteArray content = answer.mid(1);
    return answer.at(0) == dumpFollows ? content : failure(error, errorTextOf(content));
}

QByteArray convertDumpToXml(const QByteArray &dump, QString *error)
{
    if (dump.isEmpty())
        return {};
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    UIAbstraction::XmlExporter exporter(dump);
    if (!exporter.toXml(&buffer) && error)
        *error = exporter.errorText();
    return buffer.data();
}

} // namespace Morvex
