#pragma once

#include <QString>

class QFileInfo;

namespace Morvex {

/// Where an attachment of a test case goes in the result directory: a path that no file has, whose
/// name is made of that of @p source. Creates its directory.
QString attachmentPath(const QString &resultDir, const QString &testCase, const QFileInfo &source);

} // namespace Morvex
