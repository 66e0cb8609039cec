#include "objectmodel/objectmap.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace Morvex {
namespace {

ObjectMap *installed = nullptr;

QString unusedName(const QString &wanted, const QMap<QString, ObjectName> &names)
{
    QString name = wanted;
    for (int number = 2; names.contains(name); ++number)
        name = QStringLiteral("%1_%2").arg(wanted, QString::number(number));
    return name;
}

} // namespace

ObjectMap::~ObjectMap()
{
    if (installed == this)
        installed = nullptr;
}

ObjectMap *ObjectMap::self()
{
    return installed;
}

void ObjectMap::install(ObjectMap *map)
{
    installed = map;
}

ObjectMap::Entries ObjectMap::parseSerializedMap(const QString &text)
{
    Entries entries;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        const int tab = line.indexOf(QLatin1Char('\t'));
        if (tab > 0 && ObjectName::isSymbolicName(line))
            entries.append({line.left(tab), ObjectName(line.mid(tab + 1).trimmed())});
    }
    return entries;
}

QString ObjectMap::symbolFromMultiPropName(const ObjectName &name)
{
    const auto properties = name.properties();
    for (const char *key :
         {"name", "id", "text", "title", "windowTitle", "placeholderText", "type"}) {
        const QString text = properties.value(QLatin1String(key)).text;
        if (!text.isEmpty())
            return text;
    }
    return properties.isEmpty() ? name.qualifiedName() : properties.first().text;
}

QString ObjectMap::load(const QString &fileName)
{
    const QFileInfo info(fileName);
    // A pipe would keep the reader waiting.
    if (info.exists() && !info.isFile())
        return QStringLiteral("%1: it is not a regular file").arg(fileName);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("%1: %2").arg(fileName, file.errorString());
    const QByteArray bytes = file.readAll();
    if (bytes.contains('\0'))
        return QStringLiteral("%1: it has a zero byte: it is damaged, or its text is not UTF-8")
            .arg(fileName);
    for (const auto &entry : parseSerializedMap(QString::fromUtf8(bytes))) {
        if (!entry.second.isValid())
            return QStringLiteral("%1: name of '%2': %3")
                .arg(fileName, entry.first, entry.second.error());
        m_names.insert(entry.first, entry.second);
    }
    return {};
}

void ObjectMap::insert(const QString &symbolicName, const ObjectName &name)
{
    m_names.insert(symbolicName, name);
}

QString ObjectMap::symbolicName(const QString &realName, bool create)
{
    const ObjectName name(realName);
    const auto known = std::find(m_names.cbegin(), m_names.cend(), name);
    if (known != m_names.cend())
        return known.key();
    if (!create)
        return realName;
    const QString symbol = unusedName(QLatin1Char(':') + symbolFromMultiPropName(name), m_names);
    m_names.insert(symbol, name);
    return symbol;
}

} // namespace Morvex
