#include "shared/titancmp.h"

#include "shared/visual/plaincomparison.h"

#include "support/test.h"

#include <QImage>

#include <random>

using namespace Morvex;
using namespace MorvexTest;

namespace {

using Id = BrowserElement::Id;
using UIAbstraction::ElementGeometry;

struct Checks
{
    TitanPropertyChecksOfElements identifying;
    TitanPropertyChecksOfElements content;
    TitanPropertyChecksOfElements geometry;
    QMap<Id, VisualScreenshotCheck> screenshots;
    QList<Id> excluded;
    QMap<Id, TitanCompare> result;

    bool compare(BrowserElement *expected, BrowserElement *actual)
    {
        result.clear();
        return titanCompare(expected, actual, identifying, content, geometry, screenshots, excluded,
                            &result);
    }
};

QString shown(const QMap<Id, TitanCompare> &result)
{
    QString text;
    for (auto entry = result.begin(); entry != result.end(); ++entry) {
        text += QStringLiteral("%1 is %2: %3 of %4, %5|%6|%7\n")
                    .arg(entry.key().toString(), entry->actual->id().toString())
                    .arg(entry->failed)
                    .arg(entry->checked)
                    .arg(entry->identifyingFailures.join(QLatin1Char(',')),
                         entry->contentFailures.join(QLatin1Char(',')),
                         entry->geometryFailures.join(QLatin1Char(',')));
        EXPECT_EQ(entry->expected->id(), entry.key());
    }
    return text;
}

class RandomTrees
{
public:
    explicit RandomTrees(unsigned seed)
        : m_random(seed)
    {
    }

    // Below 0 to below `count`, mostly low.
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }
    QString text(int count) { return QString(QLatin1Char(char('a' + pick(count)))); }

    QImage picture()
    {
        QImage image(12, 10, QImage::Format_ARGB32);
        for (int y = 0; y < 10; ++y) {
            for (int x = 0; x < 12; ++x)
                image.setPixel(x, y, pick(60) == 0 ? 0xff000000 : 0xffffffff);
        }
        return image;
    }

    void fill(BrowserElement *parent, int levels)
    {
        for (int i = pick(5); i > 0; --i) {
            auto *element = new BrowserElement(parent, QStringLiteral("element"));
            element->setId(Id(QString::number(++m_count)));
            change(element);
            if (levels > 1)
                fill(element, levels - 1);
        }
    }

    void change(BrowserElement *element)
    {
        element->setClassName(text(2));
        element->setSimplifiedType(pick(3) == 0 ? text(2) : QString());
        element->setProperties(
            {{QStringLiteral("text"), text(2)}, {QStringLiteral("value") + text(2), text(2)}});
        element->setIdentifyingProperties({{QStringLiteral("name"), text(2)}});
        const QRect rect(pick(3), pick(3), pick(4) * 2, pick(4) * 2);
        element->setGeometry(ElementGeometry(rect, pick(4) == 0));
        element->setImage(pick(6) == 0 ? picture() : QImage());
    }

    // The same elements, some changed, in another order or left out.
    void copy(const BrowserElement *from, BrowserElement *to)
    {
        QList<BrowserElement *> children = from->children();
        if (pick(2) == 0)
            std::shuffle(children.begin(), children.end(), m_random);
        for (const BrowserElement *child : children) {
            if (pick(12) == 0)
                continue;
            auto *element = new BrowserElement(to, QStringLiteral("element"));
            element->setId(child->id());
            element->setClassName(child->className());
            element->setSimplifiedType(child->simplifiedType());
            element->setProperties(child->properties());
            element->setIdentifyingProperties(child->identifyingProperties());
            element->setGeometry(child->geometry());
            element->setImage(child->image());
            if (pick(8) == 0)
                change(element);
            copy(child, element);
        }
    }

    TitanPropertyCheck check()
    {
        TitanPropertyCheck check;
        check.mode = pick(4);
        check.delta = pick(2);
        check.value = pick(2) == 0 ? QStringLiteral("*") : QStringLiteral("[ab]");
        return check;
    }

    QMap<QString, TitanPropertyCheck> checksOf(std::initializer_list<const char *> names)
    {
        QMap<QString, TitanPropertyCheck> checks;
        for (const char *name : names) {
            if (pick(4) != 0)
                checks.insert(QLatin1String(name), check());
        }
        return checks;
    }

    Checks checks()
    {
        Checks checks;
        for (int i = 1; i <= m_count; ++i) {
            const Id id(QString::number(i));
            if (pick(3) == 0)
                checks.identifying[id] = checksOf({"name"});
            if (pick(3) != 0)
                checks.content[id] = checksOf({"text", "valuea", "valueb"});
            if (pick(3) != 0)
                checks.geometry[id] = checksOf({"x", "y", "width", "height", "depth"});
            if (pick(3) == 0)
                checks.screenshots[id] = screenshotCheck();
            if (pick(10) == 0)
                checks.excluded += id;
        }
        return checks;
    }

private:
    VisualScreenshotCheck screenshotCheck()
    {
        VisualScreenshotCheck check;
        check.algorithm = pick(3) == 0 ? 1 : 0;
        check.threshold = 0.5;
        if (pick(4) == 0)
            check.mask.addMaskRect({ImageMask::NEGATIVE, QRect(0, 0, 2, 2), false});
        return check;
    }

    std::mt19937 m_random;
    int m_count = 0;
};

BrowserElement *addElement(BrowserElement *parent, const char *id, const char *className)
{
    auto *element = new BrowserElement(parent, QStringLiteral("element"));
    element->setId(Id(QLatin1String(id)));
    element->setClassName(QLatin1String(className));
    return element;
}

} // namespace

TEST(TitanCompareTest, IsTheSameAsComparingEachPairInFull)
{
    int passed = 0;
    int failures = 0;
    for (unsigned seed = 0; seed < 600; ++seed) {
        SCOPED_TRACE(seed);
        RandomTrees trees(seed);
        BrowserElement stored(nullptr, QStringLiteral("stored"));
        BrowserElement live(nullptr, QStringLiteral("live"));
        trees.fill(&stored, 4);
        if (seed % 5 != 0)
            trees.copy(&stored, &live);
        else
            trees.fill(&live, 3);
        Checks checks = trees.checks();
        const bool holds = checks.compare(&stored, seed % 50 == 1 ? &stored : &live);
        QMap<Id, TitanCompare> plain;
        const int flags = plainCompare(&stored, seed % 50 == 1 ? &stored : &live,
                                       checks.identifying, checks.content, checks.geometry,
                                       checks.screenshots, checks.excluded, &plain);
        plain.remove(Id());
        ASSERT_EQ(shown(checks.result), shown(plain));
        ASSERT_EQ(holds, flags == 0);
        ASSERT_EQ(titanCompare(&stored, seed % 50 == 1 ? &stored : &live, checks.identifying,
                               checks.content, checks.geometry, checks.screenshots, checks.excluded,
                               nullptr),
                  holds);
        passed += holds;
        for (const TitanCompare &entry : checks.result)
            failures |= entry.failed;
    }
    // What the trees are made for.
    EXPECT_GT(passed, 20);
    EXPECT_EQ(failures, 31);
}

TEST(TitanCompareTest, ElementsBeyondTheHundredthAreComparedByTheirOrder)
{
    for (const int count : {99, 100}) {
        BrowserElement stored(nullptr, QStringLiteral("stored"));
        BrowserElement live(nullptr, QStringLiteral("live"));
        for (int i = 0; i < count; ++i) {
            addElement(&stored, "id", i == 0 ? "A" : "B");
            addElement(&live, "id", i == count - 1 ? "A" : "B");
        }
        EXPECT_EQ(Checks().compare(&stored, &live), count < 100);
    }
}

TEST(TitanCompareTest, HostileCoordinatesOnlyFail)
{
    const int far = std::numeric_limits<int>::max();
    const QRect rects[] = {QRect(QPoint(-far - 1, -far - 1), QPoint(far, far)),
                           QRect(QPoint(far, far), QPoint(far, far)),
                           QRect(QPoint(0, 0), QPoint(far, 3))};
    for (const QRect &rect : rects) {
        BrowserElement stored(nullptr, QStringLiteral("stored"));
        BrowserElement live(nullptr, QStringLiteral("live"));
        for (BrowserElement *root : {&stored, &live}) {
            BrowserElement *window = addElement(root, "window", "A");
            window->setGeometry(ElementGeometry(QRect(root == &stored ? -5 : 5, -5, 4, 4)));
            window->setImage(QImage(4, 4, QImage::Format_ARGB32));
            BrowserElement *child = addElement(window, "child", "A");
            child->setGeometry(ElementGeometry(rect));
        }
        Checks checks;
        for (const char *name : {"x", "y", "width", "height"})
            checks.geometry[Id(QStringLiteral("child"))][QLatin1String(name)] = {};
        checks.screenshots[Id(QStringLiteral("child"))] = {};
        EXPECT_FALSE(checks.compare(&stored, &live));
        EXPECT_TRUE(checks.result.value(Id(QStringLiteral("child"))).failed &
                    TitanCompare::ScreenshotCheck);
    }
}

TEST(TitanCompareTest, AnElementsPictureIsCutScaledAndWithoutItsChildren)
{
    BrowserElement root(nullptr, QStringLiteral("live"));
    BrowserElement *window = addElement(&root, "window", "A");
    window->setGeometry(ElementGeometry(QRect(100, 50, 10, 10)));
    QImage picture(20, 20, QImage::Format_ARGB32);
    picture.fill(0xffffffff);
    picture.setPixel(4, 6, 0xff123456);
    window->setImage(picture);
    BrowserElement *box = addElement(window, "box", "A");
    box->setGeometry(ElementGeometry(QRect(102, 53, 4, 5)));
    BrowserElement *button = addElement(box, "button", "A");
    button->setGeometry(ElementGeometry(QRect(2, 2, 2, 9), true));
    QImage own;
    QImage other;
    ASSERT_TRUE(visualMaskImages(box, button, &own, &other, false));
    EXPECT_EQ(own.size(), QSize(8, 10));
    EXPECT_EQ(other.size(), QSize(4, 18));
    EXPECT_EQ(own.pixel(0, 0), 0xff123456);
    // The places of children are not scaled.
    EXPECT_EQ(own.pixel(1, 2), 0xffffffff);
    EXPECT_EQ(own.pixel(2, 2), 0u);
    EXPECT_EQ(own.pixel(3, 9), 0u);
    EXPECT_EQ(own.pixel(4, 9), 0xffffffff);
    EXPECT_FALSE(visualMaskImages(&root, button, &own, &other, false));
}
