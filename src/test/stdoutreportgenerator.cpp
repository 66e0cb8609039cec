#include "test/stdoutreportgenerator.h"

#include "shared/environment.h"
#include "test/isotime.h"
#include "test/openreportfile.h"
#include "test/reportgeneratorshared.h"
#include "test/resultlabels.h"

#include <QFile>

#include <unistd.h>

namespace Morvex {
namespace {

const int typeWidth = 10;
const int leftWidth = 30;

const char *colorCode(ResultColor color)
{
    switch (color) {
    case ResultColor::Red:
        return "\x1b[31m";
    case ResultColor::Green:
        return "\x1b[32m";
    case ResultColor::Magenta:
        return "\x1b[35m";
    case ResultColor::Blue:
        break;
    }
    return "\x1b[34m";
}

const char resetCode[] = "\x1b[0m";

void appendPadded(QByteArray &line, const QByteArray &text, int width)
{
    line += text;
    if (text.size() < width)
        line.append(width - text.size(), ' ');
}

QLatin1String escapeOf(QChar character)
{
    switch (character.unicode()) {
    case '\\':
        return QLatin1String("\\\\");
    case '\b':
        return QLatin1String("\\b");
    case '\t':
        return QLatin1String("\\t");
    case '\n':
        return QLatin1String("\\n");
    default:
        return {};
    }
}

// Keeps an entry on one line. Before the conversion to the locale's encoding, in some of which
// these characters are also the second byte of others.
QByteArray escaped(const QString &text)
{
    QString result;
    int copied = 0;
    for (int i = 0; i < text.size(); ++i) {
        const QLatin1String escape = escapeOf(text.at(i));
        if (escape.isEmpty())
            continue;
        result += QStringView(text).mid(copied, i - copied);
        result += escape;
        copied = i + 1;
    }
    if (copied == 0)
        return text.toLocal8Bit();
    result += QStringView(text).mid(copied);
    return result.toLocal8Bit();
}

QString leftText(const TestResult::Entry &entry)
{
    const QString place = entry.line.toString();
    return place.isEmpty() ? entry.message : place + QLatin1String(": ") + entry.message;
}

QString rightText(const TestResult::Entry &entry)
{
    QString text = entry.details;
    for (const QString &addition : {entry.info, entry.vpName}) {
        if (!addition.isEmpty())
            text += QLatin1String(" (") + addition + QLatin1Char(')');
    }
    return text;
}

std::FILE *standardStream(const QString &path)
{
    if (path.isEmpty() || path == QLatin1String("/dev/stdout"))
        return stdout;
    return path == QLatin1String("/dev/stderr") ? stderr : nullptr;
}

} // namespace

struct StdoutReportGenerator::Private
{
    // Null when no colours are to be used.
    std::FILE *colorStream = nullptr;
    IsoTime time;
    // Kept for its memory.
    QByteArray line;
};

StdoutReportGenerator::StdoutReportGenerator()
    : StdoutReportGenerator(stdout, false)
{
}

StdoutReportGenerator::StdoutReportGenerator(std::FILE *stream, bool owns)
    : m_stream(stream)
    , m_ownsStream(owns)
    , d(std::make_unique<Private>())
{
    if (stream && canUseConsoleColor(stream))
        d->colorStream = stream;
}

StdoutReportGenerator::~StdoutReportGenerator()
{
    d.reset();
    if (m_ownsStream && m_stream)
        std::fclose(m_stream);
}

TestReportGenerator::Result StdoutReportGenerator::create(const QString &path)
{
    if (std::FILE *stream = standardStream(path))
        return {new StdoutReportGenerator(stream, false), QString()};
    const QString fileName = freeReportFileName(path);
    std::FILE *stream = std::fopen(QFile::encodeName(fileName).constData(), "we");
    if (!stream)
        return {nullptr,
                QStringLiteral("Could not open report file '%1' for writing").arg(fileName)};
    return {new StdoutReportGenerator(stream, true), QString()};
}

bool canUseConsoleColor(std::FILE *stream)
{
    const std::string force = Environment::getVariable("CLICOLOR_FORCE");
    if (!force.empty() && force != "0")
        return true;
    const int descriptor = ::fileno(stream);
    if (descriptor < 0 || !::isatty(descriptor))
        return false;
    return Environment::getVariable("CLICOLOR") != "0";
}

void StdoutReportGenerator::doHandleEntry(const TestResult::Entry &original)
{
    if (!m_stream)
        return;
    const TestResult::Entry entry = convertSectionEventToLogEvent(original);
    QByteArray &line = d->line;
    line.resize(0);
    d->time.append(line, entry.time);
    line += '\t';
    if (d->colorStream)
        line += colorCode(resultColor(entry.type));
    const QLatin1String name = resultName(entry.type);
    appendPadded(line, QByteArray::fromRawData(name.data(), name.size()), typeWidth);
    line += '\t';
    if (d->colorStream)
        line += resetCode;
    appendPadded(line, escaped(leftText(entry)), leftWidth);
    line += '\t';
    line += escaped(rightText(entry));
    line += '\n';
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), m_stream);
    std::fflush(m_stream);
}

void StdoutReportGenerator::generateSummary()
{
    if (!m_stream)
        return;
    const auto counter = [this](const char *key) { return resultCount(QString::fromLatin1(key)); };
    std::fprintf(m_stream,
                 "*******************************************************\n"
                 "Summary:\n"
                 "Number of Test Cases:\t%4d\n"
                 "Number of Tests:\t%4d\n"
                 "Number of Errors:\t%4d\n"
                 "Number of Fatals:\t%4d\n"
                 "Number of Fails:\t%4d\n"
                 "Number of Passes:\t%4d\n"
                 "Number of Expected Fails:\t%4d\n"
                 "Number of Unexpected Passes:\t%4d\n"
                 "Number of Warnings:\t%4d\n"
                 "*******************************************************\n",
                 counter("testcases"), counter("tests"), counter("errors"), counter("fatals"),
                 counter("fails"), counter("passes"), counter("xfails"), counter("xpasses"),
                 counter("warnings"));
    std::fflush(m_stream);
}

} // namespace Morvex
