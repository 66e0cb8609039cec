#include "test/output/reportfile.h"

#include <QTextCodec>

namespace Morvex {
namespace {

const int mibOfUtf8 = 106;
const int pendingLimit = 65536;

// The locale's codec, null when that is UTF-8.
QTextCodec *localCodec()
{
    QTextCodec *codec = QTextCodec::codecForLocale();
    return codec && codec->mibEnum() != mibOfUtf8 ? codec : nullptr;
}

} // namespace

ReportFile::~ReportFile()
{
    flush();
}

QString ReportFile::open(const QString &fileName, OpenReportFileOptions options, Encoding encoding)
{
    const QString error = openReportFile(fileName, options, &m_file, &m_isStdStream);
    if (error.isEmpty() && m_isStdStream && encoding == LocalOnStdStream)
        m_codec = localCodec();
    return error;
}

QByteArray ReportFile::xmlDeclaration() const
{
    const QByteArray name = m_codec ? m_codec->name() : QByteArray("UTF-8");
    return "<?xml version=\"1.0\" encoding=\"" + name + "\"?>\n";
}

void ReportFile::write(const QByteArray &utf8)
{
    if (m_hasFailed || !m_file.isOpen())
        return;
    m_pending += m_codec ? encoded(utf8) : utf8;
    if (m_pending.size() >= pendingLimit)
        writePending();
}

void ReportFile::flush()
{
    writePending();
    if (!m_hasFailed && m_file.isOpen() && !m_file.flush())
        fail();
}

void ReportFile::writePending()
{
    if (!m_hasFailed && m_file.isOpen() &&
        !writeWhole(&m_file, m_pending.constData(), m_pending.size()))
        fail();
    m_pending.resize(0);
}

QByteArray ReportFile::encoded(const QByteArray &utf8) const
{
    const QString text = QString::fromUtf8(utf8);
    if (m_codec->canEncode(text))
        return m_codec->fromUnicode(text);
    QByteArray bytes;
    for (const uint character : text.toUcs4()) {
        const QString one = QString::fromUcs4(&character, 1);
        if (m_codec->canEncode(one))
            bytes += m_codec->fromUnicode(one);
        else
            bytes += "&#" + QByteArray::number(character) + ';';
    }
    return bytes;
}

void ReportFile::fail()
{
    m_hasFailed = true;
    reportWriteError(m_file.fileName(), m_file.errorString());
}

} // namespace Morvex
