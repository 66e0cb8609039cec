// The comparison of element trees: equal ones against a walk over both, changed and shuffled ones
// against the plain evaluation of the same pairs of elements.

#include "ratio.h"
#include "test/titanvp.h"

#include <QDomDocument>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <random>

using namespace Morvex;

namespace {

using Id = BrowserElement::Id;
using Checks = QMap<QString, TitanPropertyCheck>;
using PropertiesOf = const QMap<QString, QString> &(BrowserElement::*)() const;

const int elementCount = 5000;
const int fanOut = 12;

struct Shape
{
    int classes;
    bool hasNames;
};

// A text of its own, as a tree that is read has it.
QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

void fill(BrowserElement *element, int number, const Shape &shape)
{
    const QString numberText = QString::number(number);
    element->setId(Id(QStringLiteral("{5c0e3b74-68e6-4a2d-9d4e-") + numberText + QLatin1Char('}')));
    element->setClassName(QStringLiteral("QWidgetOfClass%1").arg(number % shape.classes));
    element->setProperties({{text("text"), text("The text ") + numberText},
                            {text("enabled"), text("true")},
                            {text("visible"), text("true")},
                            {text("checked"), text("false")},
                            {text("toolTip"), QString()}});
    if (shape.hasNames)
        element->setIdentifyingProperties({{text("name"), text("n") + numberText}});
    element->setGeometry(UIAbstraction::ElementGeometry(QRect(number % 100, number / 100, 80, 20)));
}

void build(BrowserElement *root, const Shape &shape)
{
    QList<BrowserElement *> queue{root};
    for (int number = 0; number < elementCount; ++number) {
        BrowserElement *parent = queue.first();
        auto *element = new BrowserElement(parent, QStringLiteral("element"));
        fill(element, number, shape);
        queue += element;
        if (parent->children().count() == fanOut || parent == root)
            queue.removeFirst();
    }
}

void change(BrowserElement *element, std::mt19937 &random)
{
    QMap<QString, QString> properties = element->properties();
    if (!properties.isEmpty())
        properties[QStringLiteral("text")] += QStringLiteral(" now");
    element->setProperties(properties);
    QList<BrowserElement *> children = element->children();
    std::shuffle(children.begin(), children.end(), random);
    for (BrowserElement *child : children) {
        element->attach(child);
        change(child, random);
    }
}

struct Comparison
{
    explicit Comparison(const Shape &shape)
        : stored(nullptr, QStringLiteral("stored"))
        , live(nullptr, QStringLiteral("live"))
    {
        build(&stored, shape);
        build(&live, shape);
        addChecks();
    }

    void addChecks()
    {
        readChecks(&BrowserElement::identifyingProperties, &identifying);
        readChecks(&BrowserElement::properties, &content);
        readChecks(nullptr, &geometry);
    }

    // As they come from the file of a point. Those of the geometry when there is no function.
    void readChecks(PropertiesOf propertiesOf, TitanPropertyChecksOfElements *checks)
    {
        QDomDocument document;
        QDomElement check = document.createElement(QStringLiteral("check"));
        document.appendChild(check);
        addChecks(&stored, propertiesOf, &check);
        visualVpVerifyProperties(check, checks);
    }

    static void addChecks(const BrowserElement *parent, PropertiesOf propertiesOf,
                          QDomElement *check)
    {
        const QStringList geometryNames{text("x"), text("y"), text("width"), text("height")};
        for (const BrowserElement *element : parent->children()) {
            const QStringList names =
                propertiesOf ? QStringList((element->*propertiesOf)().keys()) : geometryNames;
            if (!names.isEmpty())
                check->appendChild(verification(*element, names, check->ownerDocument()));
            addChecks(element, propertiesOf, check);
        }
    }

    static QDomElement verification(const BrowserElement &element, const QStringList &names,
                                    QDomDocument document)
    {
        QDomElement result = document.createElement(QStringLiteral("PropertyVerification"));
        result.setAttribute(QStringLiteral("element-id"), text(element.id().toString().toLatin1()));
        for (const QString &name : names) {
            QDomElement property = document.createElement(QStringLiteral("VerifyProperty"));
            property.setAttribute(QStringLiteral("name"), text(name.toLatin1()));
            property.setAttribute(QStringLiteral("type"), QStringLiteral("equal"));
            result.appendChild(property);
        }
        return result;
    }

    bool run()
    {
        QMap<Id, TitanCompare> result;
        return titanCompare(&stored, &live, identifying, content, geometry, {}, {}, &result);
    }

    BrowserElement stored;
    BrowserElement live;
    TitanPropertyChecksOfElements identifying;
    TitanPropertyChecksOfElements content;
    TitanPropertyChecksOfElements geometry;
};

bool areEqual(const BrowserElement *a, const BrowserElement *b)
{
    if (a->className() != b->className() || a->properties() != b->properties() ||
        a->identifyingProperties() != b->identifyingProperties() ||
        a->geometry() != b->geometry() || a->children().count() != b->children().count())
        return false;
    for (int i = 0; i < a->children().count(); ++i) {
        if (!areEqual(a->children()[i], b->children()[i]))
            return false;
    }
    return true;
}

int differences(const QMap<QString, QString> &expected, const QMap<QString, QString> &actual,
                const Checks &checks)
{
    int count = 0;
    for (auto property = expected.begin(); property != expected.end(); ++property) {
        const auto other = actual.find(property.key());
        if (checks.contains(property.key()) && (other == actual.end() || *other != *property))
            ++count;
    }
    return count;
}

struct PlainEvaluation
{
    const Comparison &comparison;
    long long pairs = 0;
    int found = 0;

    void evaluate(const BrowserElement *expected, const BrowserElement *actual)
    {
        ++pairs;
        if (expected->className() != actual->className())
            return;
        const Id id = expected->id();
        const auto identifying = comparison.identifying.find(id);
        if (identifying != comparison.identifying.end() &&
            differences(expected->identifyingProperties(), actual->identifyingProperties(),
                        *identifying) > 0)
            return;
        const auto content = comparison.content.find(id);
        if (content != comparison.content.end())
            found += differences(expected->properties(), actual->properties(), *content);
        const auto geometry = comparison.geometry.find(id);
        if (geometry != comparison.geometry.end())
            found += expected->geometry() != actual->geometry();
        for (const BrowserElement *child : expected->children()) {
            for (const BrowserElement *other : actual->children())
                evaluate(child, other);
        }
    }
};

void equalTrees(benchmark::State &state)
{
    Comparison comparison({8, true});
    MorvexBenchmark::Ratio ratio(MorvexBenchmark::computedSecondsOf);
    for (auto _ : state) {
        state.SetIterationTime(ratio.measure(
            [&] {
                if (!comparison.run())
                    std::abort();
            },
            [&] {
                if (!areEqual(&comparison.stored, &comparison.live))
                    std::abort();
            }));
    }
    state.counters["ratio_to_walk"] = ratio.value();
}
BENCHMARK(equalTrees)->UseManualTime()->Unit(benchmark::kMillisecond);

void changedAndShuffledTrees(benchmark::State &state)
{
    const bool isMixed = state.range(0) == 8;
    Comparison comparison({static_cast<int>(state.range(0)), isMixed});
    std::mt19937 random(11);
    change(&comparison.live, random);
    long long pairs = 0;
    MorvexBenchmark::Ratio ratio(MorvexBenchmark::computedSecondsOf);
    for (auto _ : state) {
        state.SetIterationTime(ratio.measure(
            [&] {
                if (comparison.run())
                    std::abort();
            },
            [&] {
                PlainEvaluation plain{comparison};
                plain.evaluate(&comparison.stored, &comparison.live);
                benchmark::DoNotOptimize(plain.found);
                pairs = plain.pairs;
            }));
    }
    state.counters["pairs"] = static_cast<double>(pairs);
    state.counters["ratio_to_plain"] = ratio.value();
}
BENCHMARK(changedAndShuffledTrees)
    ->ArgName("classes")
    ->Arg(8)
    ->Arg(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
