#pragma once

#include <QByteArray>
#include <QString>

#include <utility>
#include <vector>

namespace MorvexTest {

using ArchiveParts = std::vector<std::pair<QByteArray, QByteArray>>;

/// Writes a zip archive of parts with these names and contents.
void writeArchive(const QString &path, const ArchiveParts &parts);

/// Adds a part that unpacks to @p start and then more than four gigabytes of @p filler.
void addBomb(const QString &path, const QByteArray &name, const QByteArray &start, char filler);

} // namespace MorvexTest
