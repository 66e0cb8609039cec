#include "shared/testdata.h"

#include "shared/files/writefile.h"

#include <QDir>
#include <QMap>

#include <algorithm>
#include <string>
#include <vector>

namespace Morvex {
namespace {

const QLatin1Char quote('"');

QString emptyText()
{
    return QLatin1String("");
}

QString escapedCSVField(const QString &value)
{
    QString escaped = value;
    escaped.replace(quote, QLatin1String("\"\""));
    return quote + escaped + quote;
}

// The first field is written in any case, and fields that are missing stay without quotes.
QString recordAsLine(const TestDataRecord &record, int headerCount, char separator)
{
    const QLatin1Char sep(separator);
    QString line = escapedCSVField(record.valueAsString(0));
    for (int column = 1; column < record.count(); ++column)
        line += sep + escapedCSVField(record.valueAsString(column));
    for (int column = qMax(record.count(), 1); column < headerCount; ++column)
        line += sep;
    return line + QLatin1Char('\n');
}

} // namespace

struct TestDataRecord::Private
{
    Private(TestDataSet *owner, int number)
        : dataSet(owner)
        , index(number)
    {
    }

    TestDataSet *dataSet;
    std::vector<QString> values;
    // In place of them, as long as the record is as it was read: the end of each text, and then
    // the texts in UTF-8.
    std::unique_ptr<quint32[]> packed;
    int packedCount = 0;
    int index;

    bool hasColumn(int column) const { return column >= 0 && column < count(); }
    int count() const { return packed ? packedCount : static_cast<int>(values.size()); }

    void pack(std::string_view texts, const std::vector<quint32> &ends)
    {
        const std::size_t textUnits = (texts.size() + sizeof(quint32) - 1) / sizeof(quint32);
        values.clear();
        packed.reset(new quint32[ends.size() + textUnits]);
        packedCount = static_cast<int>(ends.size());
        std::copy(ends.begin(), ends.end(), packed.get());
        std::copy(texts.begin(), texts.end(), reinterpret_cast<char *>(&packed[ends.size()]));
    }

    QString unpacked(int column) const
    {
        const char *texts = reinterpret_cast<const char *>(packed.get() + packedCount);
        const quint32 begin = column == 0 ? 0 : packed[static_cast<std::size_t>(column) - 1];
        const quint32 end = packed[static_cast<std::size_t>(column)];
        return QString::fromUtf8(texts + begin, static_cast<int>(end - begin));
    }

    // Before a change.
    void unpack()
    {
        if (!packed)
            return;
        values.reserve(static_cast<std::size_t>(packedCount));
        for (int column = 0; column < packedCount; ++column)
            values.push_back(unpacked(column));
        packed.reset();
    }

    QString value(int column) const
    {
        if (!hasColumn(column))
            return QString();
        return packed ? unpacked(column) : values[static_cast<std::size_t>(column)];
    }
};

TestDataRecord::TestDataRecord(TestDataSet *dataSet, int index)
    : d(new Private(dataSet, index))
{
}

TestDataRecord::~TestDataRecord() = default;

TestDataSet *TestDataRecord::dataSet() const
{
    return d->dataSet;
}

int TestDataRecord::count() const
{
    return d->count();
}

int TestDataRecord::index() const
{
    return d->index;
}

QString TestDataRecord::valueAsString(int column) const
{
    return d->value(column);
}

QString TestDataRecord::valueAsString(const QString &fieldName) const
{
    return d->dataSet ? valueAsString(d->dataSet->fieldIndex(fieldName)) : QString();
}

void TestDataRecord::setValue(int column, const QString &value)
{
    if (column < 0)
        return;
    d->unpack();
    const auto index = static_cast<std::size_t>(column);
    if (index >= d->values.size())
        d->values.resize(index + 1, emptyText());
    d->values[index] = value;
}

void TestDataRecord::reserve(int count)
{
    d->unpack();
    d->values.reserve(static_cast<std::size_t>(count));
}

void TestDataRecord::setValues(std::string_view texts, const std::vector<quint32> &ends)
{
    d->pack(texts, ends);
}

void TestDataRecord::addValue(const QString &value)
{
    d->unpack();
    d->values.push_back(value);
}

void TestDataRecord::insertField(int column)
{
    d->unpack();
    if (d->hasColumn(column))
        d->values.insert(d->values.begin() + column, QString());
}

void TestDataRecord::removeField(int column)
{
    d->unpack();
    if (d->hasColumn(column))
        d->values.erase(d->values.begin() + column);
}

struct TestDataSet::Private
{
    QString dataName;
    std::vector<std::unique_ptr<TestDataRecord>> records;
    std::unique_ptr<TestDataRecord> header;
    QMap<QString, int> fieldIndex;
    char separator;
    bool readOnly;
    QString errorText;

    TestDataRecord *record(int index) const
    {
        const bool exists = index >= 0 && static_cast<std::size_t>(index) < records.size();
        return exists ? records[static_cast<std::size_t>(index)].get() : nullptr;
    }

    // A record that the set owns is the set's to change.
    static std::unique_ptr<TestDataRecord> take(const TestDataRecord *record)
    {
        return std::unique_ptr<TestDataRecord>(const_cast<TestDataRecord *>(record));
    }

    std::string toText() const;
};

TestDataSet::TestDataSet(const QString &dataName, char separator, bool readOnly)
    : d(new Private{dataName, {}, {}, {}, separator, readOnly, {}})
{
}

TestDataSet::~TestDataSet() = default;

QString TestDataSet::dataName() const
{
    return d->dataName;
}

bool TestDataSet::isReadOnly() const
{
    return d->readOnly;
}

char TestDataSet::getSep() const
{
    return d->separator;
}

QString TestDataSet::errorText() const
{
    return d->errorText;
}

void TestDataSet::setErrorText(const QString &text)
{
    d->errorText = text;
}

int TestDataSet::count() const
{
    return static_cast<int>(d->records.size());
}

const TestDataRecord *TestDataSet::record(int index) const
{
    return d->record(index);
}

TestDataRecord *TestDataSet::record(int index)
{
    return d->record(index);
}

const TestDataRecord *TestDataSet::header() const
{
    return d->header.get();
}

TestDataRecord *TestDataSet::header()
{
    return d->header.get();
}

int TestDataSet::fieldIndex(const QString &name) const
{
    return d->fieldIndex.value(name, -1);
}

void TestDataSet::setHeader(TestDataRecord *header)
{
    // The present header is set again to have its names indexed again.
    if (header != d->header.get())
        d->header.reset(header);
    d->fieldIndex.clear();
    for (int column = 0; header && column < header->count(); ++column)
        d->fieldIndex.insert(header->valueAsString(column), column);
}

void TestDataSet::addRecord(const TestDataRecord *record)
{
    if (record)
        d->records.push_back(Private::take(record));
}

void TestDataSet::insertRecord(const TestDataRecord *record, int position)
{
    if (record && d->record(position))
        d->records.insert(d->records.begin() + position, Private::take(record));
}

void TestDataSet::removeRecord(int index)
{
    if (d->record(index))
        d->records.erase(d->records.begin() + index);
}

void TestDataSet::insertField(int column)
{
    if (d->header)
        d->header->insertField(column);
    for (const auto &record : d->records)
        record->insertField(column);
}

void TestDataSet::removeField(int column)
{
    if (d->header)
        d->header->removeField(column);
    for (const auto &record : d->records)
        record->removeField(column);
}

std::string TestDataSet::Private::toText() const
{
    const int headerCount = header ? header->count() : 0;
    std::string text;
    const auto append = [&](const TestDataRecord &record) {
        const QByteArray line = recordAsLine(record, headerCount, separator).toUtf8();
        text.append(line.constData(), static_cast<std::size_t>(line.size()));
    };
    if (header)
        append(*header);
    for (const auto &record : records)
        append(*record);
    return text;
}

bool TestDataSet::save(const QString &fileName)
{
    if (d->readOnly)
        return false;
    const QString path = fileName.isEmpty() ? d->dataName : fileName;
    const std::string text = d->toText();
    return writeFileSafely(path, text.data(), static_cast<qint64>(text.size())).outcome ==
           FileWriteResult::Written;
}

void fillEmptyCells(unsigned from, unsigned to, TestDataRecord *record)
{
    for (; from < to; ++from)
        record->addValue(emptyText());
}

void TestData::checkAndMakeDir(const QString &path, bool isFile)
{
    const QLatin1Char slash('/');
    if (isFile && !path.contains(slash))
        return;
    QStringList parts = path.split(slash, Qt::SkipEmptyParts);
    if (isFile && !parts.isEmpty())
        parts.removeAll(QString(parts.constLast()));
    QString base = path.startsWith(slash) ? QString(slash) : QString();
    for (const QString &part : parts) {
        QDir dir(base);
        if (!dir.exists(part))
            dir.mkdir(part);
        base += part + slash;
    }
}

} // namespace Morvex
