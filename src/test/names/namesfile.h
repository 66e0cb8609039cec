#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

namespace Morvex {

/// Ends the line at which new definitions go.
inline const QLatin1String insertionMarker("MORVEX_INSERT_OBJECT_NAMES_HERE");

/// The bytes of the names file, or those of the template when it is missing or blank. Empty when
/// neither can be read.
QByteArray namesFileContent(const QString &path, const QString &templatePath);

/// Without their ends.
QStringList linesOf(const QByteArray &code);

/// Returns an error text, empty on success.
[[nodiscard]] QString makeDirectoryOf(const QString &path);

/// Replaces the content of the names file, and waits until it can survive a loss of power. Returns
/// an error text, with which the file is as it was; empty on success.
[[nodiscard]] QString writeNamesFile(const QString &path, const QByteArray &code);

/// The files beside the names file, then those of the user's directories of shared scripts, that
/// fit one of the wildcard @p patterns.
QStringList scriptFilesBeside(const QString &path, const QStringList &patterns);

/// Invalid when there is none of the files.
QDateTime latestModificationOf(const QStringList &files);

/// What a names file says below definitions that have found no place in it.
QString noteOfMissingMarker();

/// Without the ":" before each; @p dump is that of ScriptedObjectMap::scriptedNamesDump.
QStringList namesOfDump(const QString &dump);

} // namespace Morvex
