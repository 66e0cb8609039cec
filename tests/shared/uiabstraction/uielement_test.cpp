#include "shared/uiabstraction/elementstore.h"
#include "shared/uiabstraction/uielement.h"
#include "support/sampletrees.h"
#include "support/test.h"

#include <QPoint>

using namespace Morvex::UIAbstraction;
using namespace MorvexTest;

namespace {

QList<UIElement *> readQuietly(const QByteArray &dump)
{
    QList<UIElement *> elements;
    standardErrorOf([&] { elements = UIElement::elementsFromByteArray(dump); });
    return elements;
}

int levelsOf(const UIElement *element)
{
    int levels = 1;
    for (; !element->children().isEmpty(); element = element->children().first())
        ++levels;
    return levels;
}

// The stream form of an element with nothing in it, up to the count of its children.
QByteArray emptyElement(const QByteArray &image = QByteArray(4, '\0'))
{
    const QByteArray nullText(4, char(0xff));
    const QByteArray zero(4, '\0');
    return nullText.repeated(5) + zero + QByteArray(3, '\0') + nullText + QByteArray(17, '\0') +
           image + nullText.repeated(2) + zero.repeated(3);
}

const QByteArray one("\0\0\0\1", 4);

} // namespace

TEST(UIElementTest, RandomTreesComeBackFromTheirDumpsWithAllFields)
{
    for (quint32 seed = 1; seed <= 40; ++seed) {
        QRandomGenerator random(seed);
        const auto first = randomTree(random, 1 + random.bounded(6));
        const auto second = randomTree(random, 1);
        const QList<UIElement *> written{first.get(), second.get()};
        const QList<UIElement *> read =
            UIElement::elementsFromByteArray(UIElement::toByteArray(written));
        ASSERT_EQ(read.size(), 2);
        for (const bool hidesTransparent : {false, true})
            EXPECT_EQ(xmlOf(read, hidesTransparent), xmlOf(written, hidesTransparent)) << seed;
        EXPECT_TRUE(read.at(0)->isSimilarTo(first.get(), true));
        read.at(0)->children().isEmpty()
            ? read.at(0)->setText(QStringLiteral("other"))
            : read.at(0)->children().last()->setText(QStringLiteral("other"));
        EXPECT_FALSE(read.at(0)->isSimilarTo(first.get(), true));
        qDeleteAll(read);
    }
}

TEST(UIElementTest, ADumpThatEndsEarlyEndsWithTheElementThatWasBegun)
{
    UIElement root(QStringLiteral("1"), StandardType(QStringLiteral("window")), QString());
    UIElement *child = newElement("QLabel", &root);
    child->setImage(QImage(2, 2, QImage::Format_Mono));
    newElement("QLabel", &root)->registerEvent(UIEvent(QStringLiteral("click")));
    const QByteArray dump = UIElement::toByteArray({&root});
    int children = 0;
    for (int size = 0; size < dump.size(); ++size) {
        const QList<UIElement *> read = readQuietly(dump.left(size));
        ASSERT_EQ(read.size(), size < 4 ? 0 : 1) << size;
        if (!read.isEmpty()) {
            ASSERT_GE(read.first()->children().size(), children) << size;
            children = read.first()->children().size();
        }
        qDeleteAll(read);
    }
    EXPECT_EQ(children, 2);
}

TEST(UIElementTest, CountsThatTheBytesDontHoldMakeNoElements)
{
    const QByteArray many("\x7f\xff\xff\xff", 4);
    const QByteArray negative(4, char(0xff));
    const QByteArray zero(4, '\0');
    for (const QByteArray &dump : {many, negative, one + many, many + emptyElement() + negative,
                                   many + emptyElement() + many, one + zero.repeated(5) + many,
                                   one + negative.repeated(9)}) {
        const QList<UIElement *> read = readQuietly(dump);
        ASSERT_LE(read.size(), 2);
        for (const UIElement *element : read)
            EXPECT_LE(element->children().size(), 1);
        qDeleteAll(read);
    }
}

TEST(UIElementTest, DeepDumpsKeepTheLevelsThatOthersReadAndWhatComesAfterThem)
{
    const int levels = 100000;
    QByteArray dump("\0\0\0\2", 4);
    for (int i = 1; i < levels; ++i)
        dump += emptyElement() + one;
    dump += (emptyElement() + QByteArray(4, '\0')).repeated(2);
    QList<UIElement *> read;
    EXPECT_NE(standardErrorOf([&] { read = UIElement::elementsFromByteArray(dump); }), "");
    ASSERT_EQ(read.size(), 2);
    EXPECT_EQ(levelsOf(read.first()), maxElementLevels);

    // A tree made here is cut where it is written.
    UIElement *top = newElement("top");
    UIElement *deepest = top;
    for (int i = 0; i < levels; ++i)
        deepest = newElement("below", deepest);
    QByteArray written;
    standardErrorOf([&] { written = UIElement::toByteArray({top, read.at(1)}); });
    delete top;
    qDeleteAll(read);
    read = UIElement::elementsFromByteArray(written);
    ASSERT_EQ(read.size(), 2);
    EXPECT_EQ(levelsOf(read.first()), maxElementLevels);
    qDeleteAll(read);
}

TEST(UIElementTest, HostilePicturesAreNone)
{
    const QByteArray signature("\x89PNG\r\n\x1a\n", 8);
    const auto header = [](const char *size) {
        return QByteArray("\0\0\0\x0dIHDR", 8) + QByteArray(size, 4).repeated(2) +
               QByteArray("\x08\x06\0\0\0", 5) + QByteArray(4, 'c');
    };
    const QByteArray end = QByteArray("\0\0\0\0IEND", 8) + QByteArray(4, 'c');
    const std::pair<QByteArray, bool> rows[] = {
        {signature + header("\0\0\x75\x30") + end, true},
        {signature + header("\0\0\x1f\x40") + end, true},
        {signature + header("\x7f\xff\xff\xff") + end, true},
        {signature + end, true},
        {signature + header("\0\0\0\1"), false},
        {signature + QByteArray("\xff\xff\xff\xffIHDR", 8), false},
        {QByteArray("GIF89a"), false},
    };
    for (const auto &[png, hasMore] : rows) {
        const QList<UIElement *> read =
            readQuietly(QByteArray("\0\0\0\2", 4) + emptyElement(one + png) + QByteArray(4, '\0') +
                        emptyElement());
        ASSERT_EQ(read.size(), hasMore ? 2 : 1);
        EXPECT_FALSE(read.first()->isImageSet());
        qDeleteAll(read);
    }
}

TEST(UIElementTest, ATreeHasEachElementOnce)
{
    auto *top = newElement("QDialog");
    auto *other = newElement("QDialog");
    auto *button = newElement("QPushButton", top);
    int added = 0;
    QObject::connect(top, &UIElement::childAdded, [&added] { ++added; });
    top->addChild(button);
    EXPECT_EQ(added, 0);
    other->addChild(button);
    EXPECT_TRUE(top->children().isEmpty());
    EXPECT_EQ(button->parentId(), other->id());
    EXPECT_NE(top->id(), other->id());
    delete newElement("QLabel", other);
    EXPECT_EQ(other->children(), QList<UIElement *>{button});

    ElementStore store;
    for (UIElement *element : {top, button, other})
        store.addElement(element);
    EXPECT_EQ(store.topLevelElements(), (QList<UIElement *>{top, other}));
    EXPECT_EQ(store.elementById(button->id()), button);
    store.clearAndDeleteElements();
    EXPECT_TRUE(store.isEmpty());
}

TEST(UIElementTest, UsageCountsRegisteredEventsWhereTheyHappened)
{
    const UIEvent click(QStringLiteral("click"));
    UIElement top(QString(), StandardType(), QStringLiteral("QDialog"));
    top.setText(QStringLiteral("%1"));
    top.setGeometry(ElementGeometry(QRect(0, 0, 10, 10)));
    EXPECT_EQ(standardErrorOf([&] { top.addUsage(click); }),
              "Unregistered event occured on { standardType='unknown', concreteType='QDialog', "
              "text='%1' }: 'click'\n");
    EXPECT_EQ(top.usage(click), 0);

    UIElement *outside = newElement("QMenu", &top);
    outside->setGeometry(ElementGeometry(QRect(5, 5, 50, 50)));
    for (UIElement *element : {&top, outside})
        element->registerEvent(click);
    top.addUsageForChildAt(click, QPoint(7, 7));
    top.addUsageForChildAt(click, QPoint(40, 40));
    top.addUsageForChildElements(click);
    top.registerEvent(click);
    EXPECT_EQ(top.usage(click), 1);
    EXPECT_EQ(outside->usage(click), 3);
    top.setUsage(click, std::numeric_limits<int>::max());
    top.addUsage(click);
    EXPECT_EQ(top.usage(click), std::numeric_limits<int>::max());
}

TEST(ElementGeometryTest, PlacesAreRelativeToValidBasesAndNeverOverflow)
{
    const int min = std::numeric_limits<int>::min();
    const int max = std::numeric_limits<int>::max();
    const std::tuple<ElementGeometry, ElementGeometry, QRect> rows[] = {
        {ElementGeometry(QRect(10, 20, 3, 4)), ElementGeometry(QRect(1, 2, 9, 9)),
         QRect(9, 18, 3, 4)},
        {ElementGeometry(QRect(10, 20, 3, 4), true), ElementGeometry(QRect(1, 2, 9, 9)),
         QRect(10, 20, 3, 4)},
        {ElementGeometry(QRect(10, 20, 3, 4)), ElementGeometry(), QRect(0, 0, 3, 4)},
        {ElementGeometry(QRect(QPoint(max - 1, min), QPoint(max, min + 2))),
         ElementGeometry(QRect(QPoint(min, max), QPoint(min, max))),
         QRect(QPoint(max, min), QPoint(max, min))},
    };
    for (const auto &[geometry, base, expected] : rows) {
        EXPECT_EQ(geometry.relativeTo(base).rect(), expected);
        EXPECT_TRUE(geometry.relativeTo(base).isRelative());
    }
    const ElementGeometry all(QRect(QPoint(min, min), QPoint(max, max)));
    EXPECT_EQ(all.width(), max);
}
