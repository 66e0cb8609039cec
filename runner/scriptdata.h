#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace Morvex {

class TestDataRecord;
class TestDataSet;

/// A test data table as scriptapi.mjs sees it.
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
    Q_INVOKABLE QStringList fields() const;
    int count() const;
    /// Null for an index out of range.
    const TestDataRecord *record(int index) const;
    /// The values of a record.
    Q_INVOKABLE QStringList row(int index) const;
    /// Empty where the record is too short.
    Q_INVOKABLE QString value(int index, int column) const;
    /// The values of @p column in @p count records from @p first on, as far as there are any.
    Q_INVOKABLE QStringList values(int column, int first, int count) const;

private:
    explicit ScriptData(std::unique_ptr<TestDataSet> dataSet);

    const std::unique_ptr<TestDataSet> m_dataSet;
};

} // namespace Morvex
