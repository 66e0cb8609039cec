#include "runner/namesfile.h"

#include "objectmodel/objectname.h"
#include "runner/enginewatch.h"
#include "runner/resources.h"
#include "shared/files/regularfile.h"

#include <QFile>
#include <QFileInfo>
#include <QObject>
#include <QTextCodec>

namespace Morvex {
namespace {

const int utf8Mib = 106;

// As in scriptnames.mjs.
const QChar referenceMark(1);

bool isUtf8(const QByteArray &content)
{
    QTextCodec::ConverterState state;
    QTextCodec::codecForMib(utf8Mib)->toUnicode(content.constData(), content.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

int lineOf(const QByteArray &content, int position)
{
    return 1 + content.left(position).count('\n');
}

NamesFileError read(const QString &path, QByteArray *content)
{
    QFile file(path);
    if (!file.exists())
        return {};
    const QString error = openRegularFile(&file);
    if (!error.isEmpty())
        return {QStringLiteral("Cannot read the names file: %1").arg(error), LineInfo(path, 0)};
    *content = file.readAll();
    return checkNamesFileContent(path, *content);
}

std::vector<std::pair<QString, QString>> pairsOf(const QJSValue &lines)
{
    std::vector<std::pair<QString, QString>> pairs;
    for (const QVariant &line : lines.toVariant().toList()) {
        const QVariantList parts = line.toList();
        pairs.emplace_back(parts.value(0).toString(), parts.value(1).toString());
    }
    return pairs;
}

NamesFileError thrown(const ScriptEngine::Outcome &outcome, const QString &path)
{
    return {outcome.value.toString(),
            outcome.stack.empty() ? LineInfo(path, 0) : outcome.stack.front()};
}

NamesFileError interrupted(std::chrono::milliseconds limit, const LineInfo &place)
{
    const double seconds = static_cast<double>(limit.count()) / 1000;
    return {QStringLiteral("The names file was still running after %1 seconds.").arg(seconds),
            place};
}

// No byte of a character of several is a line feed.
int firstInvalidLine(const QByteArray &content)
{
    int number = 1;
    for (const QByteArray &line : content.split('\n')) {
        if (!isUtf8(line))
            return number;
        ++number;
    }
    return 0;
}

// What the grammar of names refuses, for scriptnames.mjs.
class NameGrammar : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE QString errorOf(const QString &text) const
    {
        const ObjectName name(text);
        return name.isValid() ? QString() : name.error();
    }
};

} // namespace

QString NamesFileError::toString() const
{
    return text.isEmpty() ? QString() : place.toString() + QLatin1String(": ") + text;
}

QString namesFileName()
{
    return QStringLiteral("names.js");
}

QJSValue installNameFunctions(ScriptEngine *engine)
{
    return engine->internalFunction(QStringLiteral("scriptnames"))
        .call({engine->engine().globalObject(), engine->engine().newQObject(new NameGrammar)});
}

QString namesFileReference(const QString &key)
{
    return referenceMark + key;
}

bool isNamesFileReference(const QString &text)
{
    return text.startsWith(referenceMark);
}

NamesFileError checkNamesFileContent(const QString &path, const QByteArray &content)
{
    const int zero = content.indexOf('\0');
    if (zero >= 0)
        return {QStringLiteral("The names file holds a zero byte; it may have been cut by a crash. "
                               "Restore it, or delete the byte."),
                LineInfo(path, lineOf(content, zero))};
    if (!isUtf8(content))
        return {QStringLiteral("The names file is not UTF-8; save it in this encoding."),
                LineInfo(path, firstInvalidLine(content))};
    return {};
}

NamesFileError runNamesFile(ScriptEngine *engine, const QJSValue &functions, const QString &path,
                            std::vector<std::pair<QString, QString>> *lines,
                            std::chrono::milliseconds limit)
{
    QByteArray content;
    NamesFileError error = read(path, &content);
    if (!error.text.isEmpty())
        return error;
    QJSValue names = functions.property(QStringLiteral("makeNames")).call();
    QJSValue global = engine->engine().globalObject();
    global.setProperty(QStringLiteral("names"), names.property(QStringLiteral("defining")));
    if (!content.isEmpty()) {
        const EngineWatch watch(&engine->engine(), limit);
        const ScriptEngine::Outcome outcome = engine->run(QString::fromUtf8(content), path);
        const NamesFileError failure = thrown(outcome, path);
        if (watch.hasInterrupted())
            return interrupted(limit, failure.place);
        if (outcome.hasThrown)
            return failure;
    }
    const QString where = QFileInfo::exists(path)
                              ? QStringLiteral("in the names file '%1'").arg(path)
                              : QStringLiteral("since the suite has no names file '%1'").arg(path);
    global.setProperty(QStringLiteral("names"),
                       names.property(QStringLiteral("reading")).callWithInstance(names, {where}));
    if (lines)
        *lines = pairsOf(names.property(QStringLiteral("lines")));
    return {};
}

} // namespace Morvex

#include "namesfile.moc"
