#include "fuzzinput.h"
#include "runner/javascriptobjectmap.h"

#include <QCoreApplication>
#include <QFile>

using namespace Morvex;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

// Without the carriage returns at their ends, which are line ends of their own at the end of the
// file.
QStringList linesOf(const QByteArray &content)
{
    QStringList lines = QString::fromUtf8(content).split(QLatin1Char('\n'));
    for (QString &line : lines) {
        while (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
    }
    while (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

} // namespace

// Whatever is in the names file, as long as recording takes it: after a name was added each of its
// lines is still there, in their order.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    // The script engine wants one.
    static int argc = 1;
    static char name[] = "names_fuzzer";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);

    const QString path = fuzzInputFile(bytes, size, "names.js");
    const QByteArray before = contentOf(path);
    if (!checkNamesFileContent(path, before).text.isEmpty() ||
        QString::fromUtf8(before).trimmed().isEmpty())
        return 0;
    JavaScriptObjectMap map(path);
    map.getSymbolicName(QStringLiteral("{text='Save' window={title='Main'}}"), true);
    require(map.save());
    const QStringList after = linesOf(contentOf(path));
    int next = 0;
    for (const QString &line : linesOf(before)) {
        next = after.indexOf(line, next) + 1;
        require(next > 0);
    }
    return 0;
}
