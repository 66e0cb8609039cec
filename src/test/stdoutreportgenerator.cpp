#include "test/stdoutreportgenerator.h"

#include "shared/environment.h"
#include "test/openreportfile.h"
#include "test/output/reporttarget.h"
#include "test/report/countertable.h"
#include "test/report/iso8601time.h"
#include "test/report/resultlabels.h"
#include "test/reportgeneratorshared.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <stdio_ext.h>
#include <unistd.h>

namespace Morvex {
namespace {

const int typeWidth = 10;
const int leftWidth = 30;
const int lineCapacity = 1024;
const int maxKeptCapacity = 1024 * 1024;
const int lineNumberSize = 16;

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

// Blanks up to the width, counted from start on.
void pad(QByteArray &line, int start, int width)
{
    const int missing = start + width - line.size();
    if (missing > 0)
        line.append(missing, ' ');
}

// What follows a backslash for an ASCII character; 0 when it stands for itself.
struct EscapeTable
{
    constexpr EscapeTable()
    {
        for (const char *pair : {"\\\\", "\bb", "\tt", "\nn"})
            escapes[static_cast<unsigned char>(pair[0])] = pair[1];
    }

    char escapes[0x80] = {};
};

constexpr EscapeTable escapeTable;

char escapeOf(ushort character)
{
    return character < 0x80 ? escapeTable.escapes[character] : '\0';
}

// Writes ASCII text at once, which most texts are and all encodings of locales have in common.
// False, with the line unchanged, for any other text.
bool appendEscapedAscii(QByteArray &line, const QString &text)
{
    const int start = line.size();
    line.resize(start + 2 * text.size());
    char *out = line.data() + start;
    const ushort *const end = text.utf16() + text.size();
    for (const ushort *in = text.utf16(); in != end; ++in) {
        if (*in >= 0x80) {
            line.resize(start);
            return false;
        }
        const char escape = escapeOf(*in);
        if (escape)
            *out++ = '\\';
        *out++ = escape ? escape : static_cast<char>(*in);
    }
    line.resize(static_cast<int>(out - line.data()));
    return true;
}

// Keeps an entry on one line. Escapes before the conversion to the locale's encoding, in some of
// which these characters are also the second byte of others.
void appendEscaped(QByteArray &line, const QString &text)
{
    if (appendEscapedAscii(line, text))
        return;
    QString escapedText;
    for (const QChar character : text) {
        const char escape = escapeOf(character.unicode());
        if (escape)
            escapedText += QLatin1Char('\\');
        escapedText += escape ? QLatin1Char(escape) : character;
    }
    line += escapedText.toLocal8Bit();
}

void appendLeftText(QByteArray &line, const TestResult::Entry &entry)
{
    if (entry.line.isValid()) {
        appendEscaped(line, entry.line.fileName());
        char number[lineNumberSize];
        const auto end = std::to_chars(number, number + sizeof number, entry.line.lineNumber()).ptr;
        line += ':';
        line.append(number, static_cast<int>(end - number));
        line += ": ";
    }
    appendEscaped(line, entry.message);
}

void appendInBrackets(QByteArray &line, const QString &text)
{
    if (text.isEmpty())
        return;
    line += " (";
    appendEscaped(line, text);
    line += ')';
}

void appendRightText(QByteArray &line, const TestResult::Entry &entry)
{
    appendEscaped(line, entry.details);
    appendInBrackets(line, entry.info);
    appendInBrackets(line, entry.vpName);
}

// Null on failure. The file stays taken when the given object closes it.
std::FILE *streamOn(const QFile &file)
{
    const int descriptor = ::fcntl(file.handle(), F_DUPFD_CLOEXEC, 0);
    return descriptor < 0 ? nullptr : ::fdopen(descriptor, "w");
}

} // namespace

struct StdoutReportGenerator::Private
{
    // Null when no colours are to be used.
    std::FILE *colorStream = nullptr;
    Iso8601Time time;
    bool hasFailed = false;
    // Kept for its memory, which an array gives up when it is emptied unless some was reserved.
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
    d->line.reserve(lineCapacity);
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
    if (std::FILE *stream = standardStream(path)) {
        const QString error = takeStandardStream(stream);
        return {error.isEmpty() ? new StdoutReportGenerator(stream, false) : nullptr, error};
    }
    QFile file;
    const QString error = openFreeReportTarget(QDir::current().absoluteFilePath(path), &file);
    std::FILE *stream = error.isEmpty() ? streamOn(file) : nullptr;
    if (!stream)
        return {nullptr,
                QStringLiteral("Could not open report file '%1' for writing").arg(file.fileName())};
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

void StdoutReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    if (!m_stream)
        return;
    if (isSectionEvent(entry.type))
        writeLine(convertSectionEventToLogEvent(entry));
    else
        writeLine(entry);
}

void StdoutReportGenerator::writeLine(const TestResult::Entry &entry)
{
    QByteArray &line = d->line;
    line.resize(0);
    d->time.appendIsoDate(line, entry.time);
    line += '\t';
    if (d->colorStream)
        line += colorCode(resultColor(entry.type));
    const QLatin1String name = resultName(entry.type);
    const int nameStart = line.size();
    line.append(name.data(), name.size());
    pad(line, nameStart, typeWidth);
    line += '\t';
    if (d->colorStream)
        line += resetCode;
    const int leftStart = line.size();
    appendLeftText(line, entry);
    pad(line, leftStart, leftWidth);
    line += '\t';
    appendRightText(line, entry);
    line += '\n';
    writeAtOnce(line);
    if (line.capacity() > maxKeptCapacity) {
        line = QByteArray();
        line.reserve(lineCapacity);
    }
}

// Past the buffer of the stream, which a flush for each line makes a detour.
void StdoutReportGenerator::writeAtOnce(const QByteArray &line)
{
    const int descriptor = ::fileno(m_stream);
    if (descriptor < 0 || ::__fpending(m_stream) > 0) {
        std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), m_stream);
        flush();
        return;
    }
    if (!writeWhole(descriptor, line.constData(), static_cast<std::size_t>(line.size())))
        reportFailure();
}

void StdoutReportGenerator::flush()
{
    if (std::fflush(m_stream) != 0 || std::ferror(m_stream))
        reportFailure();
}

// What can't be written is reported once; the run and the other reports go on.
void StdoutReportGenerator::reportFailure()
{
    if (d->hasFailed)
        return;
    d->hasFailed = true;
    noteIncompleteReport();
    std::fprintf(stderr, "morvexrunner: Could not write the console report: %s\n",
                 std::strerror(errno));
}

void StdoutReportGenerator::generateSummary()
{
    if (!m_stream)
        return;
    const char frame[] = "*******************************************************\n";
    std::fprintf(m_stream, "%sSummary:\n", frame);
    for (const CounterRow::Member member :
         {&Counters::testcases, &Counters::tests, &Counters::errors, &Counters::fatals,
          &Counters::fails, &Counters::passes, &Counters::xfails, &Counters::xpasses,
          &Counters::warnings}) {
        const CounterRow &row = counterRow(member);
        std::fprintf(m_stream, "Number of %s:\t%4d\n", row.label.data(), resultCount(row.key));
    }
    std::fputs(frame, m_stream);
    flush();
}

} // namespace Morvex
