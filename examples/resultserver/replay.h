#pragma once

#include <QDir>
#include <QString>

/// Adds a run that was received to the web report it belongs to, below @p data, and removes it from
/// where it came in. Returns an error text, empty on success; the run stays where it is then.
QString addToReport(const QDir &data, const QString &runDirectory);

/// The page of that report.
QString reportPage(const QDir &data, const QString &reportName);
