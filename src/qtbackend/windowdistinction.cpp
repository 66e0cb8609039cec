#include "qtbackend/windowdistinction.h"

#include "qtbackend/identification.h"

#include <QCryptographicHash>
#include <QWidget>

namespace Morvex {
namespace {

// In characters.
const int maxSummary = 80;

// What distinguishes a window without a name and a title from others of its class, however often it
// is made: the classes and names of what is in it. Empty for an empty one.
QString summaryOf(const QWidget &window)
{
    QStringList parts;
    const auto widgets = window.findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const QString name = widget->objectName();
        // Of those of the toolkit there are more or less, as it needs them.
        if (widget->window() != &window || name.startsWith(QLatin1String("qt_")))
            continue;
        const QString className = QString::fromLatin1(widget->metaObject()->className());
        parts += name.isEmpty() ? className : QStringLiteral("%1 \"%2\"").arg(className, name);
    }
    parts.sort();
    parts.removeDuplicates();
    const QString summary = parts.join(QLatin1String(", "));
    if (summary.size() <= maxSummary)
        return summary;
    const QByteArray hash =
        QCryptographicHash::hash(summary.toUtf8(), QCryptographicHash::Sha1).toHex().left(8);
    return QStringLiteral("%1… (%2)").arg(summary.left(maxSummary), QString::fromLatin1(hash));
}

} // namespace

QString steadyTextOf(const QObject *object)
{
    const QHash<QString, QString> texts = identifyingPropertiesOf(object);
    for (const char *property : {"text", "title", "windowTitle"}) {
        const QString text = texts.value(QLatin1String(property));
        if (!text.isEmpty())
            return text;
    }
    return {};
}

QString distinctionOfUnnamed(const QWidget &window)
{
    const QString title = window.windowTitle();
    if (!title.isEmpty())
        return QStringLiteral(" titled \"%1\"").arg(title);
    const QString summary = summaryOf(window);
    return summary.isEmpty() ? QString() : QStringLiteral(" with ") + summary;
}

QStringList orderOfUnnamed(const QWidget &window)
{
    QStringList contents;
    const auto widgets = window.findChildren<QWidget *>();
    for (const QWidget *widget : widgets)
        contents += QString::fromLatin1(widget->metaObject()->className()) + QLatin1Char(' ') +
                    widget->objectName() + QLatin1Char(' ') + steadyTextOf(widget);
    // They are in stacking order, which a click changes.
    contents.sort();
    return QStringList{window.objectName(), window.windowTitle()} + contents;
}

} // namespace Morvex
