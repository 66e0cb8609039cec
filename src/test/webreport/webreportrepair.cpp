#include "test/webreport/webreportrepair.h"

#include "shared/files/filelock.h"
#include "shared/files/regularfile.h"
#include "shared/files/writefile.h"
#include "shared/realpath.h"
#include "shared/system/trace.h"
#include "test/openreportfile.h"
#include "test/webreport/webreportdata.h"
#include "test/webreport/webreportscanner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstring>
#include <unistd.h>

namespace Morvex {
namespace {

const QLatin1String lockFileName(".lock");
// A repair of a large report, or another one that begins, is soon over; a run is not.
const int lockWaitMilliseconds = 3000;

// Goes through the statements of a data file.
class DataFileScanner
{
public:
    DataFileScanner(const char *data, qint64 size)
        : m_data(data)
        , m_fileEnd(data + size)
        , m_end(afterLastText(data, data + size))
        , m_position(data)
    {
    }

    WebReportEdits scan()
    {
        scanHeader();
        while (m_result.error.isEmpty() && m_position != m_end)
            scanRun();
        if (!m_result.error.isEmpty())
            m_result.edits.clear();
        else if (m_end != m_fileEnd)
            dropEmptyBlocks();
        return m_result;
    }

private:
    // A power failure may leave the end of a file filled with zeros.
    static const char *afterLastText(const char *begin, const char *end)
    {
        while (end != begin && end[-1] == '\0')
            --end;
        return end;
    }

    // How many bytes of text are at the present position; the end of the part may come first.
    static qint64 matchedLength(const char *position, const char *end, const char *text)
    {
        const qint64 length = std::min<qint64>(end - position, qint64(std::strlen(text)));
        return std::memcmp(position, text, std::size_t(length)) == 0 ? length : -1;
    }

    void scanHeader()
    {
        const qint64 length = matchedLength(m_data, m_end, webReportHeader);
        if (length < 0) {
            m_result.error = QStringLiteral("is not the data file of a web report");
        } else if (length < qint64(std::strlen(webReportHeader)) && length > 0) {
            m_result.runs = 1;
            addEdit(m_data, m_end, QByteArray(webReportHeader) + webReportLostRun, false);
            m_position = m_end;
        } else {
            m_position += length;
        }
    }

    void scanRun()
    {
        ++m_result.runs;
        const char *end = findNextRun();
        const qint64 length = matchedLength(m_position, end, webReportRunBegin);
        if (length < 0)
            setBroken(m_position);
        else if (length < qint64(std::strlen(webReportRunBegin)))
            addEdit(m_position, end, webReportLostRun, false);
        else
            end = scanDocument(m_position + length, end);
        m_position = end;
    }

    // A run that was cut and not repaired has the next one right after its last byte.
    const char *findNextRun() const
    {
        const void *mark = ::memmem(m_position + 1, std::size_t(m_end - m_position - 1),
                                    webReportRunMark, sizeof webReportRunMark - 1);
        return mark ? static_cast<const char *>(mark) : m_end;
    }

    // Returns where the next run begins.
    const char *scanDocument(const char *begin, const char *end)
    {
        WebReportScanner scanner(begin, end);
        switch (scanner.scan()) {
        case WebReportScanner::Complete:
            return scanRunEnd(scanner, end);
        case WebReportScanner::Cut:
            closeDocument(scanner, end);
            break;
        case WebReportScanner::Broken:
            // Two runs that wrote at the same time leave such a document.
            if (matchedLength(m_position, end, webReportRunMark) ==
                qint64(std::strlen(webReportRunMark)))
                closeDocument(scanner, end);
            else
                setBroken(scanner.position());
            break;
        }
        return end;
    }

    void closeDocument(const WebReportScanner &scanner, const char *end)
    {
        if (scanner.closingPosition())
            addEdit(scanner.closingPosition(), end,
                    QByteArray::fromStdString(scanner.closingText()) + webReportRunEnd,
                    scanner.isEnded());
        else
            addEdit(m_position, end, webReportLostRun, false);
    }

    const char *scanRunEnd(const WebReportScanner &scanner, const char *end)
    {
        const char *position = scanner.position();
        const qint64 length = matchedLength(position, end, webReportRunEnd);
        if (length < qint64(std::strlen(webReportRunEnd))) {
            addEdit(position, end, webReportRunEnd, scanner.isEnded());
            return end;
        }
        position = std::find_if_not(position + length, end, isBlank);
        if (matchedLength(position, end, webReportRunBegin) >= 0)
            return position;
        addEdit(position, end, QByteArray(), scanner.isEnded());
        return end;
    }

    static bool isBlank(char byte) { return byte == '\n' || byte == '\r' || byte == ' '; }

    void setBroken(const char *position)
    {
        m_result.error = QStringLiteral("is damaged at byte %1").arg(position - m_data);
    }

    void addEdit(const char *begin, const char *end, const QByteArray &text, bool isEnded)
    {
        m_result.edits.push_back({begin - m_data, end - m_data, text, m_result.runs, isEnded});
    }

    void dropEmptyBlocks()
    {
        if (!m_result.edits.empty() && m_result.edits.back().end == m_end - m_data)
            m_result.edits.back().end = m_fileEnd - m_data;
        else
            addEdit(m_end, m_fileEnd, QByteArray(), true);
    }

    const char *const m_data;
    const char *const m_fileEnd;
    const char *const m_end;
    const char *m_position;
    WebReportEdits m_result;
};

QString describe(const WebReportEdits &edits, const QString &fileName)
{
    QStringList lines;
    for (const WebReportEdit &edit : edits.edits) {
        lines += QStringLiteral("Closed run %1 of %2 in '%3'%4")
                     .arg(QString::number(edit.run), QString::number(edits.runs), fileName,
                          edit.isEnded ? QString() : QStringLiteral(", which did not end"));
    }
    return lines.join(QLatin1String("; "));
}

// Calls piece with all parts of the repaired file in order.
template <typename Piece>
void forEachPiece(const char *data, qint64 size, const std::vector<WebReportEdit> &edits,
                  Piece piece)
{
    qint64 position = 0;
    for (const WebReportEdit &edit : edits) {
        piece(data + position, edit.begin - position);
        piece(edit.text.constData(), edit.text.size());
        position = edit.end;
    }
    piece(data + position, size - position);
}

QString writeError(const QString &fileName, const QString &reason)
{
    return QStringLiteral("Could not write '%1': %2").arg(fileName, reason);
}

// Needs no room for a second copy, and the file stays its owner's. Takes away only what must change
// before it adds the rest: a kill between the two leaves the mark of a run that can be repaired.
QString replaceTail(const QString &fileName, const char *data, const WebReportEdit &edit)
{
    const qint64 longest = qMin(edit.end - edit.begin, qint64(edit.text.size()));
    const auto kept =
        std::mismatch(edit.text.begin(), edit.text.begin() + longest, data + edit.begin).first -
        edit.text.begin();
    QFile file(fileName);
    const bool isWritten = file.open(QIODevice::ReadWrite | QIODevice::Unbuffered) &&
                           file.resize(edit.begin + kept) && file.seek(edit.begin + kept) &&
                           writeWhole(&file, edit.text.constData() + kept, edit.text.size() - kept);
    return isWritten ? QString() : writeError(fileName, file.errorString());
}

WebReportRepair failedRepair(const QString &error)
{
    WebReportRepair repair;
    repair.error = error;
    return repair;
}

WebReportRepair repairContent(const QString &fileName, const char *data, qint64 size)
{
    const WebReportEdits edits = webReportEdits(data, size);
    if (!edits.error.isEmpty())
        return failedRepair(QStringLiteral("'%1' %2").arg(fileName, edits.error));
    WebReportRepair repair;
    repair.message = QStringLiteral("Nothing to repair in '%1'").arg(fileName);
    if (edits.edits.empty())
        return repair;
    const QString error = replaceWebReportData(fileName, data, size, edits.edits);
    if (!error.isEmpty())
        return failedRepair(error);
    repair.isRepaired = true;
    repair.message = describe(edits, fileName);
    return repair;
}

WebReportRepair repairFile(const QString &fileName)
{
    QFile file(fileName);
    const QString error = openRegularFile(&file);
    if (!error.isEmpty())
        return failedRepair(QStringLiteral("Could not open '%1': %2").arg(fileName, error));
    if (file.size() == 0)
        return repairContent(fileName, "", 0);
    const auto *data = reinterpret_cast<const char *>(file.map(0, file.size()));
    if (!data)
        return failedRepair(
            QStringLiteral("Could not read '%1': %2").arg(fileName, file.errorString()));
    return repairContent(fileName, data, file.size());
}

WebReportRepair inUse(const QString &fileName)
{
    WebReportRepair repair = failedRepair(
        QStringLiteral("'%1' is being written or repaired by another process").arg(fileName));
    repair.isInUse = true;
    return repair;
}

} // namespace

WebReportRepair repairWebReport(const QString &directory)
{
    std::unique_ptr<FileLock> lock;
    return lockAndRepairWebReport(directory, &lock);
}

WebReportRepair lockAndRepairWebReport(const QString &directory, std::unique_ptr<FileLock> *lock)
{
    const QDir dataDir(QDir(cleanedPath(directory)).filePath(webReportDataDir));
    const QString fileName = dataDir.filePath(webReportDataFile);
    // What is no report is left alone.
    if (QFileInfo::exists(fileName)) {
        *lock = std::make_unique<FileLock>(dataDir.filePath(lockFileName), lockWaitMilliseconds);
        if ((*lock)->isHeldElsewhere()) {
            lock->reset();
            return inUse(fileName);
        }
    }
    return repairFile(fileName);
}

QString replaceWebReportData(const QString &fileName, const char *data, qint64 size,
                             const std::vector<WebReportEdit> &edits)
{
    if (edits.size() == 1 && edits.front().end == size)
        return replaceTail(fileName, data, edits.front());
    std::vector<std::string_view> pieces;
    forEachPiece(data, size, edits, [&pieces](const char *piece, qint64 length) {
        pieces.emplace_back(piece, static_cast<std::size_t>(length));
    });
    const FileWriteResult result = writeFileSafely(fileName, pieces);
    return result.outcome == FileWriteResult::Written ? QString()
                                                      : writeError(fileName, result.error);
}

WebReportEdits webReportEdits(const char *data, qint64 size)
{
    return DataFileScanner(data, size).scan();
}

QByteArray applyWebReportEdits(const char *data, qint64 size,
                               const std::vector<WebReportEdit> &edits)
{
    QByteArray result;
    forEachPiece(data, size, edits, [&result](const char *piece, qint64 length) {
        result.append(piece, static_cast<int>(length));
    });
    return result;
}

} // namespace Morvex
