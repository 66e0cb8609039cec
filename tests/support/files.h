#pragma once

#include <QByteArray>
#include <QString>

namespace MorvexTest {

/// Creates the directory of the file when it does not exist. Ends the test program on failure.
void writeFile(const QString &path, const QByteArray &content);

/// A null array when the file can't be read.
QByteArray readFile(const QString &path);

} // namespace MorvexTest
