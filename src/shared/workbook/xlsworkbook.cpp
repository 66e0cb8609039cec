#include "shared/workbook/xlsworkbook.h"

#include "shared/files/regularfile.h"
#include "shared/workbook/biffrecord.h"
#include "shared/workbook/bifftext.h"
#include "shared/workbook/compoundfile.h"

#include <QFile>

namespace Morvex {
namespace {

const quint16 defaultCodePage = 1252;

// What programs can write, and far below what a byte array holds.
const qint64 maxFileSize = 1024 * 1024 * 1024;

// Files of old are nothing but the stream.
QByteArray workbookStream(const QString &fileName)
{
    QFile file(fileName);
    if (!openRegularFile(&file).isEmpty() || file.size() > maxFileSize)
        return {};
    const QByteArray content = file.read(file.size());
    // A file of two versions has the newer one in the first of these.
    return isCompoundFile(content)
               ? readCompoundStream(content, {QStringLiteral("Workbook"), QStringLiteral("Book")})
               : content;
}

} // namespace

bool XlsWorkbook::load(const QString &fileName)
{
    return loadStream(workbookStream(fileName));
}

bool XlsWorkbook::loadStream(const QByteArray &stream)
{
    m_stream = stream;
    BiffRecordWalk walk(this->stream(), 0);
    BiffRecord record;
    std::vector<std::string_view> sharedStrings;
    bool isInSharedStrings = false;
    while (walk.next(&record)) {
        isInSharedStrings = record.type() == BiffRecord::SharedStrings ||
                            (record.type() == BiffRecord::Continue && isInSharedStrings);
        if (isInSharedStrings)
            sharedStrings.push_back(record.from(0));
        else
            take(record, walk.offset());
    }
    if (m_hasPassword)
        return true;
    m_form.sharedStrings = readBiffSharedStrings(sharedStrings);
    return walk.isComplete() && (m_form.codec || !m_hasCodePage);
}

void XlsWorkbook::take(const BiffRecord &record, quint32 end)
{
    const int boundSheetNameOffset = 6;
    const int sheetHeaderNameOffset = 4;
    if (record.isBof())
        begin(record);
    else if (record.type() == BiffRecord::CodePage && m_hasCodePage)
        m_form.codec = codecOfCodePage(record.word(0));
    else if (record.type() == BiffRecord::FilePass)
        m_hasPassword = true;
    else if (record.type() == BiffRecord::BoundSheet)
        m_sheets.push_back({record.doubleWord(0), record.from(boundSheetNameOffset)});
    else if (record.type() == BiffRecord::SheetHeader)
        m_sheets.push_back({end, record.from(sheetHeaderNameOffset)});
}

void XlsWorkbook::begin(const BiffRecord &bof)
{
    const quint16 version8 = 0x0600;
    const quint16 sheet = 0x0010;
    m_hasCodePage = bof.type() != BiffRecord::Bof5 || bof.word(0) != version8;
    m_form.codec = m_hasCodePage ? codecOfCodePage(defaultCodePage) : nullptr;
    // Before the value are the place and a format of two bytes, once of three.
    m_form.valueOffset = bof.type() == BiffRecord::Bof2 ? 7 : 6;
    // A file of old has one sheet and nothing around it.
    if (bof.type() != BiffRecord::Bof5 && bof.word(2) == sheet)
        m_sheets.push_back({0, {}});
}

QString XlsWorkbook::sheetName(int sheet) const
{
    const std::string_view name = m_sheets.at(static_cast<std::size_t>(sheet)).name;
    if (name.empty())
        return {};
    const auto length = static_cast<quint8>(name.front());
    return BiffText(m_form.codec, length, name.substr(1)).text();
}

bool XlsWorkbook::selectSheet(int sheet)
{
    m_selectedOffset = m_sheets.at(static_cast<std::size_t>(sheet)).offset;
    std::optional<BiffSheet> selected = BiffSheet::read(stream(), m_selectedOffset, m_form);
    if (selected)
        m_selected = std::move(*selected);
    return selected.has_value();
}

std::optional<XlsCell> XlsWorkbook::cell(unsigned column, unsigned row) const
{
    return m_selected.cell(column, row);
}

bool XlsWorkbook::hasCell(unsigned column, unsigned row) const
{
    return cell(column, row) || BiffSheet::hasBlank(stream(), m_selectedOffset, column, row);
}

std::string_view XlsWorkbook::stream() const
{
    return {m_stream.constData(), static_cast<std::size_t>(m_stream.size())};
}

} // namespace Morvex
