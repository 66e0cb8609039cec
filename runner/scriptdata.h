#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>

namespace Morvex {

class TestDataRecord;
class TestDataSet;

/// A test data table as scriptdata.mjs sees it. Its lists are no QStringLists, of which the
/// engine's garbage collector frees elements that are in use.
class ScriptData : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(int count READ count CONSTANT)

public:
    /// An empty @p sheet stands for the one that TestDataSet takes then. Null, with an error text,
    /// when no table can be read.
    static std::unique_ptr<ScriptData> open(const QString &path, const QString &sheet,
                                            QString *error);
    ~ScriptData() override;

    QString name() const;
    /// No property, which the engine would read again for each element.
    Q_INVOKABLE QVariantList fields() const;
    int count() const;
    /// Null for an index out of range.
    const TestDataRecord *record(int index) const;
    /// The values of a record.
    Q_INVOKABLE QVariantList row(int index) const;
    /// Empty where the record is too short.
    Q_INVOKABLE QString value(int index, int column) const;
    /// The values of @p column in @p count records from @p first on, as far as there are any.
    Q_INVOKABLE QVariantList values(int column, int first, int count) const;

private:
    explicit ScriptData(std::unique_ptr<TestDataSet> dataSet);

    const std::unique_ptr<TestDataSet> m_dataSet;
};

} // namespace Morvex
