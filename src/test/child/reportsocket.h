#pragma once

#include <QString>

#include <memory>

class QLocalServer;
class QTemporaryDir;

namespace Morvex {

/// Has @p server listen, for nobody but the user, as @p name in the directory for temporary files.
/// Where that can't be, it does so in a new directory that @p directory then holds. False, with the
/// error of @p server, when another server listens there that may be of this run, or when there is
/// no new directory.
[[nodiscard]] bool listenForReport(QLocalServer *server, const QString &name,
                                   std::unique_ptr<QTemporaryDir> *directory);

} // namespace Morvex
