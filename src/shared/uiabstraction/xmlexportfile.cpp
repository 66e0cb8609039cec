// A part of a higher layer: applications, which the other sources get into, write no files of
// users.
#include "shared/files/writefile.h"
#include "shared/uiabstraction/xmlexport.h"

#include <QBuffer>

namespace Morvex::UIAbstraction {

bool XmlExporter::toXml(const QString &fileName)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!toXml(&buffer))
        return false;
    const FileWriteResult result = writeFileSafely(fileName, buffer.data());
    if (result.outcome == FileWriteResult::Written)
        return true;
    m_error = (result.outcome == FileWriteResult::NotOpened
                   ? QStringLiteral("Failed to open file '%1': %2")
                   : QStringLiteral("Failed to write file '%1': %2"))
                  .arg(fileName, result.error);
    return false;
}

} // namespace Morvex::UIAbstraction
