#include "test/webreport/webreportruns.h"

#include "test/webreport/webreportdata.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace Morvex {
namespace {

// No text holds this as a whole, since quotes are escaped there.
const char childrenKey[] = "\"tests\":[";
const char locationBegin[] = ":\"x-results:/";

const char *find(const char *begin, const char *end, const char *text)
{
    const void *found = ::memmem(begin, std::size_t(end - begin), text, std::strlen(text));
    return found ? static_cast<const char *>(found) : end;
}

// After the quote that ends the text whose first byte is at begin.
int endOfText(const QByteArray &document, int begin)
{
    for (int i = begin; i < document.size(); ++i) {
        if (document[i] == '\\')
            ++i;
        else if (document[i] == '"')
            return i + 1;
    }
    return document.size();
}

// Any other text that looks like a location is what a script says.
bool isLocation(const QByteArray &document, int colon)
{
    static const QByteArray keys[] = {"\"uri\"", "\"screenshotUri\"", "\"vpUri\"",
                                      "\"failedImageUri\"", "\"failedObjectDump\""};
    return std::any_of(std::begin(keys), std::end(keys), [&](const QByteArray &key) {
        const int begin = colon - key.size();
        return begin >= 0 && std::memcmp(document.constData() + begin, key.constData(),
                                         std::size_t(key.size())) == 0;
    });
}

QString decodedText(const QByteArray &quoted)
{
    return QJsonDocument::fromJson('[' + quoted + ']').array().at(0).toString();
}

// Where the children of the run begin; -1 without a run.
int childrenBegin(const QByteArray &document)
{
    const int key = int(std::strlen(childrenKey));
    const int runs = document.indexOf(childrenKey);
    if (runs < 0 || !document.mid(runs + key).startsWith('{'))
        return -1;
    const int children = document.indexOf(childrenKey, runs + key);
    return children < 0 ? -1 : children + key;
}

void readHead(WebReportRun *run)
{
    const int children = childrenBegin(run->document);
    if (children < 0)
        return;
    const QByteArray head = run->document.left(children) + "]}]}";
    const QJsonObject node = QJsonDocument::fromJson(head)
                                 .object()
                                 .value(QLatin1String("tests"))
                                 .toArray()[0]
                                 .toObject();
    run->type = node.value(QLatin1String("type")).toString();
    run->name = node.value(QLatin1String("name")).toString();
    run->uri = node.value(QLatin1String("uri")).toString();
    run->start = node.value(QLatin1String("start")).toString();
}

QRegularExpressionMatch failedPicture(const QString &path)
{
    static const QRegularExpression name(QStringLiteral(R"re(\A(.*/|)failed(_\d+\.png)\z)re"));
    return name.match(path);
}

} // namespace

QString WebReportRun::suite() const
{
    return type + QLatin1Char('\n') + name + QLatin1Char('\n') + uri;
}

std::vector<WebReportRun> webReportRuns(const char *data, qint64 size)
{
    std::vector<WebReportRun> runs;
    const char *end = data + size;
    for (const char *begin = find(data, end, webReportRunMark); begin != end;) {
        const char *next = find(begin + 1, end, webReportRunMark);
        const char *document = begin + std::strlen(webReportRunBegin);
        const char *last = next;
        while (last != document && last[-1] != '}')
            --last;
        WebReportRun run{begin - data,
                         next - data,
                         QByteArray::fromRawData(document, int(last - document)),
                         {},
                         {},
                         {},
                         {}};
        readHead(&run);
        runs.push_back(run);
        begin = next;
    }
    return runs;
}

WebReportRunParts splitWebReportRun(const QByteArray &document)
{
    static const QRegularExpression tail(
        QStringLiteral(R"re(\](?:,"stop":"([^"]*)")?\}\](?:,"ended":false)?\}\z)re"));
    WebReportRunParts parts;
    const int begin = childrenBegin(document);
    // A tail is short.
    const int from = qMax(begin, document.size() - 200);
    const auto match = tail.match(QString::fromLatin1(document.mid(from)));
    if (begin < 0 || !match.hasMatch())
        return parts;
    parts.head = document.left(begin);
    parts.children = document.mid(begin, from + match.capturedStart() - begin);
    parts.stop = match.captured(1);
    return parts;
}

QByteArray replaceReportFiles(const QByteArray &document,
                              const std::function<QByteArray(const QString &)> &replace)
{
    QByteArray result;
    const int keyLength = int(std::strlen(locationBegin));
    int copied = 0;
    for (int at = document.indexOf(locationBegin); at >= 0;
         at = document.indexOf(locationBegin, at + 1)) {
        const int quote = at + 1;
        const int end = endOfText(document, quote + 1);
        const QString encoded = decodedText(document.mid(quote, end - quote));
        const QString path = QUrl::fromPercentEncoding(encoded.mid(keyLength - 2).toUtf8());
        if (path.isEmpty() || !isLocation(document, at))
            continue;
        const QByteArray location = replace(path);
        if (location.isNull())
            continue;
        result += document.mid(copied, quote - copied) + '"' + location + '"';
        copied = end;
    }
    return copied == 0 ? document : result + document.mid(copied);
}

QStringList withFilesBeside(const QString &path)
{
    const auto failed = failedPicture(path);
    QStringList files{path};
    // What pages show of it.
    if (failed.hasMatch() || path.endsWith(QLatin1String(".xml")))
        files += path + QLatin1String(".js");
    if (failed.hasMatch())
        files << expectedPictureOf(path)
              << failed.captured(1) + QLatin1String("difference") + failed.captured(2);
    return files;
}

QString expectedPictureOf(const QString &path)
{
    const auto failed = failedPicture(path);
    return failed.hasMatch() ? failed.captured(1) + QLatin1String("expected") + failed.captured(2)
                             : QString();
}

QSet<QString> reportFilesOf(const QByteArray &document)
{
    QSet<QString> paths;
    replaceReportFiles(document, [&paths](const QString &path) {
        for (const QString &one : withFilesBeside(path))
            paths += one;
        return QByteArray();
    });
    return paths;
}

QByteArray reportLocation(const QString &path)
{
    return "x-results:/" + QUrl::toPercentEncoding(path, QByteArrayLiteral("/"));
}

} // namespace Morvex
