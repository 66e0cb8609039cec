#include "qtbackend/itempath.h"

namespace Morvex {
namespace {

const QLatin1Char separator('/');
const int maxListed = 20;
const int maxListedLength = 60;

// As a path may have it, so that a separator in the text is none.
QString escaped(QString text)
{
    return text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(separator, QLatin1String("\\/"));
}

// How much of the path the text is, and the separator after it; 0 for nothing.
int lengthAtStart(const QString &path, const QString &text)
{
    if (text.isEmpty() || !path.startsWith(text))
        return 0;
    if (path.size() == text.size())
        return text.size();
    return path.at(text.size()) == separator ? text.size() + 1 : 0;
}

} // namespace

ItemSelector ItemSelector::of(const QVariantList &values)
{
    ItemSelector selector;
    const QVariant second = values.value(1);
    if (values.size() == 2 && second.userType() != QMetaType::QVariantMap) {
        selector.isCell = true;
        selector.row = values.at(0).toInt();
        selector.column = second.toInt();
        return selector;
    }
    selector.path = values.value(0).toString();
    selector.column = second.toMap().value(QStringLiteral("column"), -1).toInt();
    selector.occurrence = second.toMap().value(QStringLiteral("occurrence")).toInt();
    return selector;
}

QString ItemSelector::describe() const
{
    return isCell ? QStringLiteral("in row %1, column %2")
                        .arg(QString::number(row), QString::number(column))
                  : QStringLiteral("'%1'").arg(path);
}

ItemPath::ItemPath(const ItemSelector &selector)
    : m_name(selector.describe())
    , m_rest(selector.path)
    , m_occurrence(selector.occurrence)
{
    if (m_rest.isEmpty())
        m_error = QStringLiteral("there is no item ''");
}

int ItemPath::next(const QStringList &texts)
{
    int longest = 0;
    QList<int> found;
    for (int i = 0; i < texts.size(); ++i) {
        const int length =
            qMax(lengthAtStart(m_rest, texts.at(i)), lengthAtStart(m_rest, escaped(texts.at(i))));
        if (length > longest)
            found.clear();
        if (length > 0 && length >= longest)
            found += i;
        longest = qMax(longest, length);
    }
    const bool isLast = longest == m_rest.size();
    const int wanted = isLast && m_occurrence > 0 ? m_occurrence - 1 : 0;
    const bool isAmbiguous = found.size() > 1 && m_occurrence == 0;
    if (isAmbiguous)
        m_error = QStringLiteral("there are %1 items %2; the option 'occurrence' says which is "
                                 "meant, from 1 on")
                      .arg(QString::number(found.size()), m_name);
    else if (wanted >= found.size())
        m_error = QStringLiteral("there is no item %1%2").arg(m_name, listedTexts(texts));
    if (!m_error.isEmpty()) {
        m_rest.clear();
        return -1;
    }
    m_rest.remove(0, longest);
    return found.at(wanted);
}

int indexAmong(const ItemSelector &selector, const QStringList &texts, int number, QString *error)
{
    if (selector.isCell) {
        if (number >= 0 && number < texts.size())
            return number;
        *error = QStringLiteral("there is no item %1; there are %2")
                     .arg(selector.describe(), QString::number(texts.size()));
        return -1;
    }
    // These have one level.
    ItemSelector whole = selector;
    const int exact = texts.indexOf(selector.path);
    if (exact >= 0)
        whole.path.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
            .replace(QLatin1Char('/'), QLatin1String("\\/"));
    ItemPath path(whole);
    const int index = path.isAtEnd() ? -1 : path.next(texts);
    if (index >= 0 && !path.isAtEnd())
        *error =
            QStringLiteral("there is no item %1%2").arg(selector.describe(), listedTexts(texts));
    else
        *error = path.error();
    return error->isEmpty() ? index : -1;
}

// A text alone may have separators.
QString itemPathOf(const QStringList &texts)
{
    if (texts.size() == 1)
        return texts.first();
    QStringList path;
    for (const QString &text : texts)
        path += escaped(text);
    return path.join(separator);
}

QString listedTexts(const QStringList &texts)
{
    QStringList listed;
    for (const QString &text : texts) {
        if (text.isEmpty())
            continue;
        if (listed.size() == maxListed) {
            listed += QStringLiteral("...");
            break;
        }
        listed += text.size() > maxListedLength ? text.left(maxListedLength) + QLatin1String("...")
                                                : text;
    }
    return listed.isEmpty()
               ? QString()
               : QStringLiteral("; there are: %1").arg(listed.join(QLatin1String(", ")));
}

QString shownText(QString text)
{
    const int tab = text.indexOf(QLatin1Char('\t'));
    if (tab >= 0)
        text.truncate(tab);
    QString shown;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('&') && i + 1 < text.size())
            ++i;
        shown += text.at(i);
    }
    return shown;
}

} // namespace Morvex
