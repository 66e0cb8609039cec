#include "support/sampletrees.h"

#include "shared/uiabstraction/xmlexport.h"

#include <QBuffer>

#include <gtest/gtest.h>

using namespace Morvex::UIAbstraction;

namespace MorvexTest {
namespace {

QString randomText(QRandomGenerator &random)
{
    static const QString texts[] = {
        QString(),
        QStringLiteral(""),
        QStringLiteral("Order form"),
        QStringLiteral("<&\"'> %1 %2 ]]>"),
        QString::fromUtf8("\xd8\xb7\xd9\x84\xd8\xa8 \xe6\xb3\xa8\xe6\x96\x87 \xf0\x9f\x93\xa6"),
        QString(QChar(0xd83d)) + QChar(0x1b) + QChar(0xffff) + QChar(0xdce6),
        QStringLiteral(" two  blanks "),
        QStringLiteral("line\nline\r\nline\r\ttab"),
    };
    return texts[random.bounded(int(sizeof(texts) / sizeof(*texts)))];
}

QRect randomRect(QRandomGenerator &random)
{
    const int far[] = {std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), 0};
    if (random.bounded(8) == 0)
        return QRect(QPoint(far[random.bounded(3)], far[random.bounded(3)]),
                     QPoint(far[random.bounded(3)], far[random.bounded(3)]));
    return QRect(random.bounded(-50, 2000), random.bounded(-50, 2000), random.bounded(300),
                 random.bounded(300));
}

QImage randomImage(QRandomGenerator &random)
{
    QImage image(1 + random.bounded(5), 1 + random.bounded(5), QImage::Format_ARGB32);
    image.fill(random.generate());
    return image;
}

} // namespace

std::unique_ptr<UIElement> randomTree(QRandomGenerator &random, int levels)
{
    auto element = std::make_unique<UIElement>(
        QString::number(random.generate()),
        random.bounded(2) ? StandardType(QStringLiteral("button")) : StandardType(),
        randomText(random));
    element->setSimplifiedType(randomText(random));
    element->setNameSpace(randomText(random));
    element->setSuperTypes({QStringLiteral("QWidget"), randomText(random)});
    element->setTransparentNode(random.bounded(8) == 0);
    element->setSubgraphTransparent(random.bounded(8) == 0);
    element->setWindowNode(random.bounded(2));
    element->setText(randomText(random));
    element->setGeometry(ElementGeometry(randomRect(random), random.bounded(2)));
    if (random.bounded(3) == 0)
        element->setImage(randomImage(random));
    element->setRealName(randomText(random));
    element->setSymbolicName(randomText(random));
    for (int i = random.bounded(4); i > 0; --i) {
        element->setConcreteProperty(randomText(random), randomText(random));
        element->setIdentifyingProperty(randomText(random), randomText(random));
        const UIEvent event(randomText(random));
        element->registerEvent(event);
        element->setUsage(event, random.bounded(1000));
    }
    for (int i = levels > 1 ? random.bounded(5) : 0; i > 0; --i)
        element->addChild(randomTree(random, levels - 1).release());
    return element;
}

UIElement *newElement(const char *className, UIElement *parent)
{
    auto *element = new UIElement(QString(), StandardType(), QLatin1String(className));
    if (parent)
        parent->addChild(element);
    return element;
}

QByteArray xmlOf(const QList<UIElement *> &elements, bool hidesTransparent)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    XmlExporter exporter(elements);
    exporter.setSkipTransparentNodes(hidesTransparent);
    exporter.setHonourSubgraphTransparency(hidesTransparent);
    EXPECT_TRUE(exporter.toXml(&buffer)) << exporter.errorText().toStdString();
    return buffer.data();
}

} // namespace MorvexTest
