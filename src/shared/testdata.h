#pragma once

#include "morvex_export.h"

#include <QString>

#include <memory>
#include <string_view>
#include <vector>

namespace Morvex {

class TestDataSet;

/// One row of a table. All values are text.
class MORVEX_EXPORT TestDataRecord
{
public:
    /// @p index is the number of the row in its source as the reader of the format counts it, -1
    /// where it has none.
    TestDataRecord(TestDataSet *dataSet, int index);
    ~TestDataRecord();

    TestDataRecord(const TestDataRecord &) = delete;
    TestDataRecord &operator=(const TestDataRecord &) = delete;

    TestDataSet *dataSet() const;
    /// Of the stored fields, which may be more or fewer than the header has.
    int count() const;
    int index() const;

    /// A null text for a column that the record, or a name that the header, does not have.
    QString valueAsString(int column) const;
    QString valueAsString(const QString &fieldName) const;

    /// A column after the last one is reached by empty fields.
    void setValue(int column, const QString &value);
    void addValue(const QString &value);
    /// Room for @p count fields at once, for readers that know how many come.
    void reserve(int count);
    /// Replaces all values by UTF-8 texts that follow each other, given the end of each in
    /// @p texts. They take no more memory than they need until another value is set.
    void setValues(std::string_view texts, const std::vector<quint32> &ends);

    /// Inserts a null text before a column that exists; anything else is ignored.
    void insertField(int column);
    void removeField(int column);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

/// A table of a test: a header with the names of the fields, and records.
class MORVEX_EXPORT TestDataSet
{
public:
    TestDataSet(const QString &dataName, char separator, bool readOnly);
    virtual ~TestDataSet();

    TestDataSet(const TestDataSet &) = delete;
    TestDataSet &operator=(const TestDataSet &) = delete;

    /// Reads a file in the format that its suffix names. The caller owns the result, which is null
    /// for a file of another suffix in which no separator can be detected. A file that can't be
    /// read makes a set without records; errorText() says why.
    static TestDataSet *createTestDataSet(const QString &fileName);
    /// Reads one sheet of a workbook. An empty name stands for the first sheet of an .xls, and for
    /// the sheet with the id 1, wherever it is, of an .xlsx. Null when the suffix does not name
    /// a workbook.
    static TestDataSet *createTestDataSetExcel(const QString &fileName, const QString &sheetName);

    /// The file that the set was read from.
    QString dataName() const;
    bool isReadOnly() const;
    /// Between the fields of a saved file.
    char getSep() const;
    /// Why the file could not be read; empty when it could. The message log or standard error have
    /// reported it already.
    QString errorText() const;

    /// Without the header.
    int count() const;
    /// Null for an index out of range.
    const TestDataRecord *record(int index) const;
    TestDataRecord *record(int index);
    /// Null when there is none.
    const TestDataRecord *header() const;
    TestDataRecord *header();
    /// The column of a field by its exact name, -1 when there is none. Of two equal names the
    /// later column counts.
    int fieldIndex(const QString &name) const;

    /// Takes the header and indexes the names of its fields.
    void setHeader(TestDataRecord *header);
    /// Takes the record.
    void addRecord(const TestDataRecord *record);
    /// Takes the record and puts it before that at @p position; with none there nothing happens,
    /// and the caller keeps the record.
    void insertRecord(const TestDataRecord *record, int position);
    void removeRecord(int index);

    /// In the header and in all records. Names keep to their old columns until setHeader is called
    /// again.
    void insertField(int column);
    void removeField(int column);

    /// Writes a delimited file, over the one that was read when @p fileName is empty. False for a
    /// read-only set and when writing fails.
    bool save(const QString &fileName);

protected:
    void setErrorText(const QString &text);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

/// Appends as many empty fields as there are columns from @p from up to, not including, @p to.
MORVEX_EXPORT void fillEmptyCells(unsigned from, unsigned to, TestDataRecord *record);

namespace TestData {

/// Makes the directories of a path. With @p isFile the last part is the name of a file; any
/// directory of that name in the path is then left out as well.
MORVEX_EXPORT void checkAndMakeDir(const QString &path, bool isFile);

} // namespace TestData
} // namespace Morvex
