#pragma once

#include "shared/files/newfile.h"

class QFileInfo;

namespace Morvex {

/// Where attachments of a test case go in the result directory: paths whose names are made of that
/// of @p source. Creates their directory.
NumberedPath attachmentPath(const QString &resultDir, const QString &testCase,
                            const QFileInfo &source);

} // namespace Morvex
