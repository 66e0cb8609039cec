#include "test/upload/uploadaddress.h"

#include "test/upload/uploadlines.h"

#include <QUrlQuery>

namespace Morvex {
namespace {

const int httpPort = 80;
const int httpsPort = 443;

const QLatin1String http("http");
const QLatin1String https("https");

QString withFormat(const QString &error)
{
    return error +
           QStringLiteral("\n\tFormat: quillbase,<url>/project/<project-name>?token=<token>");
}

void warnOfScheme(const QString &scheme)
{
    if (scheme == http || scheme == https)
        return;
    writeErrorLine("morvexrunner: quillbase: an address of '" + scheme.toUtf8() +
                   "' is taken as one of 'http', without encryption; give 'http' or 'https'\n");
}

} // namespace

QString parseUploadUrl(const QString &text, QUrl *url)
{
    *url = QUrl::fromUserInput(text);
    // Some texts are taken for the path of a file.
    if (!url->isValid() || url->host().isEmpty())
        return withFormat(
            QStringLiteral("Quill Base report generator invalid URL: '%1'").arg(text));
    if (url->scheme().isEmpty())
        url->setScheme(http);
    warnOfScheme(url->scheme());
    if (url->port() < 1)
        url->setPort(url->scheme() == https ? httpsPort : httpPort);
    return {};
}

QString parseUploadTarget(const QUrl &url, UploadAddress *address)
{
    QStringList parts = url.path(QUrl::FullyDecoded).split(QLatin1Char('/'));
    parts.removeFirst();
    const int count = parts.size();
    if (count < 2 || parts.at(count - 2) != QLatin1String("project") || parts.last().isEmpty())
        return withFormat(
            QStringLiteral("Quill Base report generator invalid URI path (missing project)"));
    const QUrlQuery query(url);
    const QString token = QStringLiteral("token");
    if (!query.hasQueryItem(token))
        return withFormat(QStringLiteral("Quill Base report generator missing upload token"));

    address->project = parts.last();
    address->token = query.queryItemValue(token, QUrl::FullyDecoded);
    address->labels = query.allQueryItemValues(QStringLiteral("label"), QUrl::FullyDecoded);
    address->batch = query.queryItemValue(QStringLiteral("batch"), QUrl::FullyDecoded);

    address->url.setScheme(url.scheme() == https ? QStringLiteral("wss") : QStringLiteral("ws"));
    address->url.setHost(url.host());
    address->url.setPort(url.port());
    const QStringList prefix = parts.mid(0, count - 2);
    if (!prefix.isEmpty())
        address->url.setPath(QLatin1Char('/') + prefix.join(QLatin1Char('/')), QUrl::DecodedMode);
    return {};
}

} // namespace Morvex
