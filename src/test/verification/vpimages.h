#pragma once

#include "objectmodel/object.h"
#include "shared/files/newfile.h"
#include "test/testresult.h"
#include "test/verificationoptions.h"

#include <QFileInfo>
#include <QImage>
#include <QString>

namespace Morvex {

class RunnerInterface;

// Pictures of verifications: where they come from and where they are stored. Directories end with
// a separator.

/// The part of the result directory that belongs to the running test case.
QString testCaseResultDir(RunnerInterface *runner);

/// Beside the script when the run has no result directory.
QString failedOutputDir(RunnerInterface *runner, const QString &subDir);

/// Where pictures that differ are stored. May not exist yet.
QString failedImageDir(const QString &vpName, const QFileInfo &vpFile, RunnerInterface *runner);

/// Whether the options ask for a picture of the desktop with results of this type.
bool wantsDesktopPicture(const VerificationOptions &options, TestResult::ResultType type);

/// Stores a picture, of the desktop for a null one, and returns the text to add to the message of
/// the result.
QString logScreenshot(RunnerInterface *runner, TestResult::ResultType type, const QImage &image);

/// "failed", "passed" and the like.
QString typeNameForTestResultType(TestResult::ResultType type);

/// Writes the first of dir/stem_1.png, dir/stem_2.png and so on that does not exist.
[[nodiscard]] NewFile writeNumberedFile(const QString &dir, const QString &stem,
                                        const QString &extension, const QByteArray &content);

QByteArray pngOf(const QImage &image);

/// False also when the disk has no room for all of it.
bool saveImage(const QImage &image, const QString &path, const char *format);

/// Null when there is none.
QImage desktopScreenshot();

/// Null on failure; @p error then has a text.
QImage grabObjectScreenshot(const SharedPtr<Object> &object, int options, int delay,
                            QString *error);

/// The way of verification points below version 4.
QImage grabObjectPixmap(const SharedPtr<Object> &object, QString *error);

} // namespace Morvex
