#pragma once

#include "morvex_export.h"
#include "test/openreportfile.h"

#include <QByteArray>
#include <QFile>
#include <QString>

class QTextCodec;

namespace Morvex {

/// The file of a report. The first write error is reported on standard error, once, and ends the
/// writing: a report with a hole in it would look whole.
class MORVEX_EXPORT ReportFile
{
public:
    enum Encoding {
        Utf8,
        /// The locale's encoding on standard output and standard error, UTF-8 in a file.
        LocalOnStdStream
    };

    ReportFile() = default;
    ~ReportFile();

    ReportFile(const ReportFile &) = delete;
    ReportFile &operator=(const ReportFile &) = delete;

    /// As openReportFile. To be called once, before all else. Returns an error text, empty on
    /// success.
    [[nodiscard]] QString open(const QString &fileName, OpenReportFileOptions options,
                               Encoding encoding);

    bool isStdStream() const { return m_isStdStream; }

    /// The XML declaration that names the encoding, with a line feed.
    QByteArray xmlDeclaration() const;

    /// Takes XML as UTF-8, cut between characters only. Characters that the encoding lacks become
    /// references.
    void write(const QByteArray &utf8);
    void flush();

private:
    QByteArray encoded(const QByteArray &utf8) const;
    void writePending();
    void fail();

    QFile m_file;
    QByteArray m_pending;
    // Null for UTF-8.
    QTextCodec *m_codec = nullptr;
    bool m_isStdStream = false;
    bool m_hasFailed = false;
};

} // namespace Morvex
