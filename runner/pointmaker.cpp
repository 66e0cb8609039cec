#include "runner/pointmaker.h"

#include "objectmodel/class.h"
#include "objectmodel/property.h"
#include "shared/files/regularfile.h"
#include "shared/files/writefile.h"
#include "shared/points/pointtypes.h"
#include "shared/requestdumpobject.h"
#include "test/titanvp.h"

#include <QFile>
#include <QFileInfo>
#include <QVariant>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace Morvex {
namespace {

const int indent = 4;

[[nodiscard]] QString makeVisualPoint(const QString &path, const QString &objectName,
                                      const SharedPtr<Object> &object)
{
    QString error;
    const QByteArray dump = requestObjectSnapshotForVisualVP(object, &error);
    if (dump.isEmpty())
        return error.isEmpty() ? QStringLiteral("The application's snapshot is empty.") : error;
    return createTitanVPFile(dump, QFileInfo(path), objectName, &error) ? QString() : error;
}

QString typeOf(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        return QStringLiteral("bool");
    case QMetaType::Int:
        return QStringLiteral("int");
    case QMetaType::LongLong:
        return QStringLiteral("long");
    case QMetaType::Double:
        return QStringLiteral("double");
    default:
        return QStringLiteral("string");
    }
}

// Null with an error when there is no such value.
SharedPtr<Object> valueAt(SharedPtr<Object> object, const QString &path, QString *error)
{
    for (const QString &step : path.split(QLatin1Char('.'), Qt::SkipEmptyParts)) {
        const Class *type = object->objectClass();
        const Property *property = type ? type->property(step) : nullptr;
        object = property ? property->get(object) : SharedPtr<Object>();
        if (!object) {
            *error = QStringLiteral("The object has no property '%1'").arg(path);
            break;
        }
    }
    return object;
}

[[nodiscard]] QString writeProperties(QXmlStreamWriter &writer, const PointRequest &request,
                                      const SharedPtr<Object> &object)
{
    for (const QString &path : request.properties) {
        QString error;
        const SharedPtr<Object> value = valueAt(object, path, &error);
        if (!value)
            return error;
        writer.writeStartElement(QStringLiteral("Verification"));
        writer.writeAttribute(QStringLiteral("object"), request.objectName);
        writer.writeAttribute(QStringLiteral("property"), path);
        writer.writeAttribute(QStringLiteral("type"), typeOf(value->value()));
        writer.writeTextElement(QStringLiteral("base64EncodedValue"),
                                QString::fromLatin1(value->valueText().toUtf8().toBase64()));
        writer.writeEndElement();
    }
    return {};
}

// What a verification that learns finds different from anything.
void writeNothing(QXmlStreamWriter &writer, const PointRequest &request)
{
    writer.writeStartElement(QStringLiteral("Verification"));
    writer.writeAttribute(QStringLiteral("object"), request.objectName);
    if (request.type == PointType::table) {
        writer.writeEmptyElement(QStringLiteral("table"));
    } else {
        writer.writeAttribute(QStringLiteral("type"), QStringLiteral("PNG"));
        writer.writeCharacters(QStringLiteral("-"));
    }
    writer.writeEndElement();
}

[[nodiscard]] QString writePoint(const QString &path, const QByteArray &xml)
{
    const FileWriteResult written = writeFileSafely(path, xml);
    return written.outcome == FileWriteResult::Written
               ? QString()
               : QStringLiteral("Could not write '%1': %2").arg(path, written.error);
}

} // namespace

QString makePointFile(const QString &path, const PointRequest &request,
                      const SharedPtr<Object> &object)
{
    if (request.type == PointType::visual)
        return makeVisualPoint(path, request.objectName, object);
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(indent);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("VerificationPoint"));
    writer.writeAttribute(QStringLiteral("version"), QStringLiteral("5"));
    writer.writeAttribute(QStringLiteral("type"), request.type);
    if (request.type == PointType::properties) {
        const QString error = writeProperties(writer, request, object);
        if (!error.isEmpty())
            return error;
    } else {
        writeNothing(writer, request);
    }
    writer.writeEndDocument();
    return writePoint(path, xml);
}

QString howToMakePoint(const QString &name, const QString &path)
{
    return QStringLiteral("There is no file '%1'. To have it made, run the test case once with "
                          "--learn and let the script say of what: check.point(\"%2\", {object: "
                          "NAME, type: TYPE}). The types are %3; %4 takes an array of names as "
                          "properties.")
        .arg(path, name, pointTypes().join(QLatin1String(", ")), PointType::properties);
}

bool isVisualPoint(const QString &path)
{
    QFile file(path);
    if (!openRegularFile(&file).isEmpty())
        return false;
    QXmlStreamReader reader(&file);
    return reader.readNextStartElement() &&
           reader.attributes().value(QLatin1String("type")) == PointType::visual;
}

} // namespace Morvex
