#include "runner/commandline.h"

#include "runner/optiontable.h"

#include <algorithm>

namespace Morvex {
namespace {

using Takes = Option::Takes;

const Option *findOption(const QString &name)
{
    const QString wanted = name == QLatin1String("-h") ? QStringLiteral("--help") : name;
    const auto &table = optionTable();
    const auto option = std::find_if(table.begin(), table.end(), [&wanted](const Option &row) {
        return wanted == QLatin1String(row.name);
    });
    return option == table.end() ? nullptr : &*option;
}

bool isNumber(const QString &argument)
{
    return !argument.isEmpty() && std::all_of(argument.begin(), argument.end(), [](QChar digit) {
        return digit >= QLatin1Char('0') && digit <= QLatin1Char('9');
    });
}

// What says what to do needs something to do it with.
bool needsValue(const Option &option)
{
    return option.takes == Takes::Value ||
           (option.takes == Takes::Rest && option.section == Option::Section::Information);
}

class Parser
{
public:
    explicit Parser(const QStringList &arguments)
        : m_arguments(arguments)
    {
    }

    CommandLine parse()
    {
        while (m_result.error.isEmpty() && m_next < m_arguments.size()) {
            const QString argument = m_arguments.at(m_next++);
            if (m_onlyPositional || !argument.startsWith(QLatin1Char('-')))
                takePositional(argument);
            else if (argument == QLatin1String("--"))
                m_onlyPositional = true;
            else
                takeOption(argument);
        }
        if (m_result.error.isEmpty())
            m_result.error = whyNotTogether();
        return m_result;
    }

private:
    void takePositional(const QString &argument)
    {
        if (argument.isEmpty())
            m_result.error = QStringLiteral("the suite directory must not be empty");
        else if (m_result.options.suiteDirectory.isEmpty())
            m_result.options.suiteDirectory = argument;
        else if (m_result.options.action == RunnerOptions::Action::Record)
            takeProgram();
        else
            // A report whose value was split at a space may hold a token.
            m_result.error = QStringLiteral("more than one suite directory: '%1'")
                                 .arg(argument.section(QLatin1Char('?'), 0, 0));
    }

    // From the argument before on.
    void takeProgram()
    {
        m_result.options.recordedProgram = m_arguments.mid(m_next - 1);
        m_next = m_arguments.size();
    }

    // What is taken by nothing must not look as if it were.
    QString whyNotTogether() const
    {
        const RunnerOptions &options = m_result.options;
        const bool isRecording = options.action == RunnerOptions::Action::Record;
        if (options.action == RunnerOptions::Action::Help)
            return {};
        if (!isRecording && !options.recordedTestCase.isEmpty())
            return QStringLiteral("--record goes with nothing else that is to be done");
        if (!isRecording && !m_optionOfRecording.isEmpty())
            return m_optionOfRecording + QStringLiteral(" needs --record");
        return isRecording && !m_optionOfRun.isEmpty()
                   ? QStringLiteral("--record takes no ") + m_optionOfRun
                   : QString();
    }

    void note(const Option &option)
    {
        const QString name = QString::fromLatin1(option.name);
        const bool isOfAny = name == QLatin1String("--settingsGroup");
        if (option.section == Option::Section::Run && !isOfAny)
            m_optionOfRun = name;
        if (option.section == Option::Section::Recording && name != QLatin1String("--record"))
            m_optionOfRecording = name;
    }

    void takeOption(const QString &argument)
    {
        const int equals = argument.indexOf(QLatin1Char('='));
        const QString name = argument.left(equals);
        const Option *option = findOption(name);
        if (!option) {
            m_result.error = QStringLiteral("unknown option '%1'").arg(name);
            return;
        }
        note(*option);
        if (equals < 0 && m_next == m_arguments.size() && needsValue(*option))
            m_result.error = name + QStringLiteral(" needs a value");
        else if (equals < 0)
            takeArguments(*option);
        else if (option->takes == Takes::Nothing)
            m_result.error = name + QStringLiteral(" takes no value");
        else
            takeFirst(*option, argument.mid(equals + 1));
    }

    void takeFirst(const Option &option, const QString &value)
    {
        set(option, value);
        if (option.takes == Takes::Application || option.takes == Takes::Rest)
            takeArguments(option);
    }

    void takeArguments(const Option &option)
    {
        switch (option.takes) {
        case Takes::Nothing:
            set(option, QString());
            break;
        case Takes::Value:
            set(option, m_arguments.at(m_next++));
            break;
        case Takes::OptionalNumber:
            set(option, m_next < m_arguments.size() && isNumber(m_arguments.at(m_next))
                            ? m_arguments.at(m_next++)
                            : QString());
            break;
        case Takes::Application:
            while (m_next < m_arguments.size() &&
                   m_arguments.at(m_next) != QLatin1String("--scriptargs"))
                set(option, m_arguments.at(m_next++));
            break;
        case Takes::Rest:
            while (m_next < m_arguments.size())
                set(option, m_arguments.at(m_next++));
            break;
        }
    }

    void set(const Option &option, const QString &value)
    {
        const QString error = option.set(m_result.options, value);
        if (!error.isEmpty())
            m_result.error = QString::fromLatin1(option.name) + QLatin1String(": ") + error;
    }

    const QStringList &m_arguments;
    int m_next = 0;
    bool m_onlyPositional = false;
    QString m_optionOfRun;
    QString m_optionOfRecording;
    CommandLine m_result;
};

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    return Parser(arguments).parse();
}

} // namespace Morvex
