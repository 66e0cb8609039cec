#pragma once

#include "morvex_export.h"

#include <QString>
#include <QStringList>
#include <QUrl>

namespace Morvex {

/// Where an upload goes, and what it says to the server of itself.
struct UploadAddress
{
    /// Of the scheme "ws" or "wss", without the token.
    QUrl url;
    QString project;
    QString token;
    /// In the order in which they were given.
    QStringList labels;
    QString batch;
};

/// The address that a user has typed, with a scheme and a port. Returns an error text, empty on
/// success. Warns on standard error of a scheme that no upload uses.
[[nodiscard]] MORVEX_EXPORT QString parseUploadUrl(const QString &text, QUrl *url);

/// Returns an error text, empty on success.
[[nodiscard]] MORVEX_EXPORT QString parseUploadTarget(const QUrl &url, UploadAddress *address);

} // namespace Morvex
