#include "shared/uiabstraction/xmlexport.h"

#include "shared/browserelement.h"
#include "shared/uiabstraction/uielement.h"
#include "support/files.h"
#include "support/filesizelimit.h"
#include "support/sampletrees.h"
#include "support/test.h"
#include "support/xmldocument.h"

#include <QBuffer>

using namespace Morvex;
using namespace Morvex::UIAbstraction;
using namespace MorvexTest;

namespace {

// What a text is once it was in a file: blanks alone are nothing, and some characters are replaced.
QString stored(QString text)
{
    text.replace(QString(QChar(0xd83d)) + QChar(0x1b) + QChar(0xffff) + QChar(0xdce6),
                 QString(4, QChar::ReplacementCharacter));
    return text;
}

QMap<QString, QString> stored(const QHash<QString, QString> &properties)
{
    QMap<QString, QString> map;
    for (auto it = properties.begin(); it != properties.end(); ++it)
        map.insert(stored(it.key()), stored(it.value()));
    return map;
}

void expectEqual(const BrowserElement &read, const UIElement &element)
{
    EXPECT_EQ(read.id().toString(), element.id());
    EXPECT_EQ(read.type(),
              element.standardType().isKnown() ? element.standardType().toString() : QString());
    EXPECT_EQ(read.className(), stored(element.concreteType()));
    EXPECT_EQ(read.simplifiedType(), stored(element.simplifiedType()));
    EXPECT_EQ(read.nameSpace(), stored(element.nameSpace()));
    EXPECT_EQ(read.superClasses().last(), stored(element.superTypes().last()));
    EXPECT_EQ(read.realName(), stored(element.realName()));
    EXPECT_EQ(read.symbolicName(), stored(element.symbolicName()));
    EXPECT_EQ(read.text(), stored(element.text()));
    EXPECT_EQ(read.isTopLevel(), element.isWindowNode());
    EXPECT_EQ(read.properties(), stored(element.concreteProperties()));
    EXPECT_EQ(read.identifyingProperties(), stored(element.identifyingProperties()));
    EXPECT_EQ(read.image().size(), element.image().size());
    if (element.geometry().rect().isValid()) {
        EXPECT_EQ(read.geometry().rect().topLeft(), element.geometry().rect().topLeft());
        EXPECT_EQ(read.geometry().width(), element.geometry().width());
        EXPECT_EQ(read.geometry().isRelative(), element.geometry().isRelative());
    }
    const QMap<UIEvent, int> usage = element.usageMap();
    for (auto it = usage.begin(); it != usage.end(); ++it)
        EXPECT_EQ(read.coverage(stored(it.key().name())), it.value());
    const QList<UIElement *> children = element.children();
    ASSERT_EQ(read.children().size(), children.size());
    for (int i = 0; i < children.size(); ++i)
        expectEqual(*read.children().at(i), *children.at(i));
}

} // namespace

TEST(XmlExportTest, RandomTreesComeBackFromTheirXmlWithAllThatXmlHolds)
{
    for (quint32 seed = 1; seed <= 40; ++seed) {
        QRandomGenerator random(seed);
        const auto tree = randomTree(random, 1 + random.bounded(6));
        const QByteArray xml = xmlOf({tree.get()}, false);
        EXPECT_EQ(XmlDocument(xml).error(), QString()) << seed;
        BrowserElement root(nullptr, QStringLiteral("live"));
        QString error;
        ASSERT_TRUE(BrowserElement::readXML(&root, xml, &error)) << error.toStdString();
        ASSERT_EQ(root.children().size(), 1);
        expectEqual(*root.children().first(), *tree);
        if (HasFailure())
            FAIL() << seed;
    }
}

TEST(XmlExportTest, TransparentNodesGiveTheirPlaceAndHideTheirSubtrees)
{
    UIElement top(QString(), StandardType(), QStringLiteral("Top"));
    top.setTransparentNode(true);
    newElement("B", newElement("A", &top));
    UIElement *opaque = newElement("C", &top);
    opaque->setSubgraphTransparent(true);
    newElement("D", opaque);
    const XmlDocument document(xmlOf({&top}));
    EXPECT_EQ(document.texts("/ui/execution/state/element/@class"), (QStringList{"A", "C"}));
    EXPECT_EQ(document.texts("//element/children/element/@class"), (QStringList{"B"}));
    EXPECT_EQ(XmlDocument(xmlOf({})).count("/ui[@version='1.0']/execution/state[not(*)]"), 1);
}

TEST(XmlExportTest, WhatCantBeWrittenWholeIsAnError)
{
    UIElement element(QString(), StandardType(), QString(100000, QLatin1Char('x')));
    XmlExporter exporter(QList<UIElement *>{&element});
    QBuffer buffer;
    EXPECT_FALSE(exporter.toXml(&buffer));
    EXPECT_EQ(exporter.errorText(), QLatin1String("Device is not open!"));
    buffer.open(QIODevice::ReadOnly);
    EXPECT_FALSE(exporter.toXml(&buffer));
    EXPECT_EQ(exporter.errorText(), QLatin1String("Device is not writable!"));
    const QTemporaryDir dir;
    const std::pair<QString, const char *> rows[] = {
        {dir.filePath(QStringLiteral("no/%1 %2")), "Failed to open file '%1': No such file"},
        {QStringLiteral("/dev/full"), "Failed to write file '%1': No space left"},
    };
    for (const auto &[file, text] : rows) {
        EXPECT_FALSE(exporter.toXml(file));
        const QString start = QString::fromLatin1(text).replace(QLatin1String("%1"), file);
        EXPECT_EQ(exporter.errorText().left(start.size()), start);
    }
    const QString file = dir.filePath(QStringLiteral("ui"));
    EXPECT_TRUE(exporter.toXml(file));
    const QByteArray whole = readFile(file);
    EXPECT_EQ(XmlDocument(whole).count("/ui/execution/state/element"), 1);
    const FileSizeLimit full(4096);
    EXPECT_FALSE(exporter.toXml(file));
    EXPECT_EQ(readFile(file), whole);
}

TEST(XmlExportTest, ReadersTakeTheDeepestTreesThatAreWritten)
{
    UIElement *top = newElement("A");
    UIElement *deepest = top;
    for (int i = 0; i < maxElementLevels + 10; ++i) {
        deepest->setConcreteProperty(QStringLiteral("text"), QStringLiteral("a"));
        deepest = newElement("A", deepest);
    }
    QByteArray xml;
    EXPECT_NE(standardErrorOf([&] { xml = xmlOf({top}); }), "");
    delete top;
    BrowserElement root(nullptr, QStringLiteral("live"));
    QString error;
    ASSERT_TRUE(BrowserElement::readXML(&root, xml, &error)) << error.toStdString();
    int levels = 0;
    for (auto *element = &root; !element->children().isEmpty();
         element = element->children().first())
        ++levels;
    EXPECT_EQ(levels, maxElementLevels);
}
