#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QSet>
#include <QString>

#include <functional>
#include <vector>

namespace Morvex {

/// A run in the data file of a web report, as it is in the file.
struct WebReportRun
{
    /// The statement, from its first byte to that of the next one.
    qint64 begin;
    qint64 end;
    /// The document in it.
    QByteArray document;
    /// Empty for a run that was lost before it started.
    QString type;
    QString name;
    QString uri;
    QString start;

    /// A suite is its name and its place.
    QString suite() const;
};

/// The runs of a data file that is whole, in the order of the file. The documents refer to the
/// @p size bytes at @p data, which have to outlive them.
std::vector<WebReportRun> webReportRuns(const char *data, qint64 size);

/// The texts of a document around the children of its run: for joining runs. Empty parts where the
/// document has no run.
struct WebReportRunParts
{
    QByteArray head;
    QByteArray children;
    /// When the run ended; empty when it did not.
    QString stop;
};
WebReportRunParts splitWebReportRun(const QByteArray &document);

/// Calls @p replace with each location below the report directory that the document names, a path
/// relative to it and decoded, and returns the document with the locations that it gives, encoded
/// ones. A null one leaves what is there.
QByteArray replaceReportFiles(const QByteArray &document,
                              const std::function<QByteArray(const QString &path)> &replace);

/// The paths of replaceReportFiles, and those of the files that are kept beside them.
QSet<QString> reportFilesOf(const QByteArray &document);

/// The names of the files that belong to the one at @p path, relative as it is; it included.
QStringList withFilesBeside(const QString &path);

/// The picture that a failed one was compared with; empty for a file of another name.
QString expectedPictureOf(const QString &path);

/// The location of a file in the report directory.
QByteArray reportLocation(const QString &path);

} // namespace Morvex
