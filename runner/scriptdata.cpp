#include "runner/scriptdata.h"

#include "shared/files/regularfile.h"
#include "shared/testdata.h"

#include <QFile>

namespace Morvex {
namespace {

QVariantList valuesOf(const TestDataRecord *record)
{
    QVariantList values;
    const int count = record ? record->count() : 0;
    values.reserve(count);
    for (int column = 0; column < count; ++column)
        values.append(record->valueAsString(column));
    return values;
}

// Why the file can't be opened at all; empty when it can.
[[nodiscard]] QString whyNotReadable(const QString &path)
{
    QFile file(path);
    return openRegularFile(&file);
}

} // namespace

ScriptData::ScriptData(std::unique_ptr<TestDataSet> dataSet)
    : m_dataSet(std::move(dataSet))
{
}

ScriptData::~ScriptData() = default;

std::unique_ptr<ScriptData> ScriptData::open(const QString &path, const QString &sheet,
                                             QString *error)
{
    *error = whyNotReadable(path);
    if (!error->isEmpty())
        return nullptr;
    std::unique_ptr<TestDataSet> dataSet(sheet.isEmpty()
                                             ? TestDataSet::createTestDataSet(path)
                                             : TestDataSet::createTestDataSetExcel(path, sheet));
    if (!dataSet)
        *error = sheet.isEmpty() ? QStringLiteral("its first lines have no separator in common")
                                 : QStringLiteral("a file of this suffix has no sheets");
    else
        *error = dataSet->errorText();
    if (!error->isEmpty())
        return nullptr;
    return std::unique_ptr<ScriptData>(new ScriptData(std::move(dataSet)));
}

QString ScriptData::name() const
{
    return m_dataSet->dataName();
}

QVariantList ScriptData::fields() const
{
    return valuesOf(m_dataSet->header());
}

int ScriptData::count() const
{
    return m_dataSet->count();
}

const TestDataRecord *ScriptData::record(int index) const
{
    return m_dataSet->record(index);
}

QVariantList ScriptData::row(int index) const
{
    return valuesOf(m_dataSet->record(index));
}

QString ScriptData::value(int index, int column) const
{
    const TestDataRecord *record = this->record(index);
    return record ? record->valueAsString(column) : QString();
}

QVariantList ScriptData::values(int column, int first, int count) const
{
    QVariantList values;
    const int end = first + qMin(count, this->count() - first);
    values.reserve(end - first);
    for (int index = first; index < end; ++index)
        values.append(value(index, column));
    return values;
}

} // namespace Morvex
