#include "runner/commandline.h"

#include "runner/optiontable.h"
#include "test/testreportgeneratorfactory.h"

namespace Morvex {
namespace {

const int helpColumn = 32;
const int helpWidth = 80;

// The text from the column on, in lines that fit the width.
QString wrapped(const QString &text)
{
    QString result;
    int column = helpColumn;
    for (const QString &word : text.split(QLatin1Char(' '))) {
        const bool isFirst = column == helpColumn;
        if (!isFirst && column + 1 + word.size() > helpWidth) {
            result += QLatin1Char('\n') + QString(helpColumn, QLatin1Char(' '));
            column = helpColumn;
        } else if (!isFirst) {
            result += QLatin1Char(' ');
            ++column;
        }
        result += word;
        column += word.size();
    }
    return result;
}

QString helpLine(const QString &left, const QString &help)
{
    QString line = QLatin1String("  ") + left;
    if (line.size() >= helpColumn)
        line += QLatin1Char('\n') + QString(helpColumn, QLatin1Char(' '));
    return line.leftJustified(helpColumn) + wrapped(help) + QLatin1Char('\n');
}

QString helpOf(Option::Section section)
{
    QString help;
    for (const Option &option : optionTable()) {
        if (option.section == section)
            help += helpLine(QString::fromLatin1(option.name) + QLatin1Char(' ') +
                                 QString::fromLatin1(option.placeholder),
                             QString::fromLatin1(option.help));
    }
    return help;
}

QString helpOfReports()
{
    QString help;
    for (const auto &keyword : TestReportGeneratorFactory::keywords()) {
        if (!keyword.description.isEmpty())
            help += helpLine(keyword.name, keyword.description);
    }
    return help;
}

} // namespace

QString helpText()
{
    return QStringLiteral(
               "Usage: morvexrunner [options] SUITE_DIRECTORY\n"
               "       morvexrunner [options] --testcase NAME\n"
               "       morvexrunner [options] --record NAME SUITE_DIRECTORY [PROGRAM...]\n"
               "\n"
               "Runs the test cases of a suite, each in a process of its own. Without a "
               "suite\n"
               "directory one test case of the suite in the current directory is run in "
               "this\n"
               "process.\n"
               "\n"
               "What is run:\n") +
           helpOf(Option::Section::Run) + QStringLiteral("\nWhat the scripts see:\n") +
           helpOf(Option::Section::Environment) + QStringLiteral("\nRecording:\n") +
           helpOf(Option::Section::Recording) + QStringLiteral("\nInformation:\n") +
           helpOf(Option::Section::Information) + QStringLiteral("\nReports (--reportgen):\n") +
           helpOfReports() +
           QStringLiteral(
               "\n"
               "Exit status: 0 all passed, 1 something failed or a report is not whole,\n"
               "2 wrong usage or a run that could not be carried out, 130 interrupted.\n"
               "\n"
               "Environment: NO_COLOR, CLICOLOR, CLICOLOR_FORCE and TERM=dumb choose "
               "colours;\n"
               "MORVEX_USER_SETTINGS_DIR is where the failed test cases are kept.\n");
}

} // namespace Morvex
