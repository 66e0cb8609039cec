#include "runner/messages.h"

#include "runner/runneroptions.h"
#include "shared/xmltext.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace Morvex {

void printMessage(const QString &text)
{
    // Texts of applications must not steer the terminal.
    printLine(QLatin1String("morvexrunner: ") +
              replaceInvalidXMLcharacters(text).remove(QLatin1Char('\r')));
}

void printLine(const QString &text)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(text));
}

void printUsageError(const QString &error)
{
    printMessage(error + QStringLiteral("; see morvexrunner --help"));
}

QString suiteDirectoryHint(const RunnerOptions &options)
{
    for (const auto &[option, words] : {std::make_pair("--scriptargs", options.scriptArguments),
                                        std::make_pair("--aut", options.aut)}) {
        if (!words.isEmpty())
            return QStringLiteral("; %1 takes all that follows, so the suite directory has to come "
                                  "before it")
                .arg(QString::fromLatin1(option));
    }
    if (options.randomSeed)
        return QStringLiteral("; --random has taken '%1' for its seed").arg(*options.randomSeed);
    return {};
}

QString shellQuoted(const QString &text)
{
    const auto isPlain = [](QChar character) {
        return character.isLetterOrNumber() || QStringLiteral("_@%+=:,./-").contains(character);
    };
    if (!text.isEmpty() && std::all_of(text.begin(), text.end(), isPlain))
        return text;
    QString quoted = text;
    quoted.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

} // namespace Morvex
