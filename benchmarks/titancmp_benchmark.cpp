// The comparison of element trees: equal ones against a walk over both, changed and shuffled ones
// against the plain evaluation of the same pairs of elements.

#include "ratio.h"
#include "test/verification/visualbody.h"

#include <QDomDocument>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <random>

using namespace Morvex;

namespace {

using Checks = QMap<QString, TitanPropertyCheck>;
using PropertiesOf = const QMap<QString, QString> &(BrowserElement::*)() const;

const int elementCount = 5000;
const int fanOut = 12;

struct Shape
{
    int classes;
    bool hasNames;
};

QString property(const QString &name, const QString &value)
{
    return QStringLiteral("<property name='%1'><string>%2</string></property>").arg(name, value);
}

QString startOf(int number, const Shape &shape)
{
    const QString id = QStringLiteral("{5c0e3b74-68e6-4a2d-9d4e-%1}").arg(number);
    QString xml = QStringLiteral("<element id='%1' class='QWidgetOfClass%2'><abstractProperties>"
                                 "<geometry isRelative='0'><x>%3</x><y>%4</y><width>80</width>"
                                 "<height>20</height></geometry></abstractProperties><properties>")
                      .arg(id)
                      .arg(number % shape.classes)
                      .arg(number % 100)
                      .arg(number / 100);
    xml += property(QStringLiteral("checked"), QStringLiteral("false")) +
           property(QStringLiteral("enabled"), QStringLiteral("true")) +
           property(QStringLiteral("text"), QStringLiteral("The text %1").arg(number)) +
           property(QStringLiteral("toolTip"), QString()) +
           property(QStringLiteral("visible"), QStringLiteral("true")) +
           QLatin1String("</properties>");
    if (shape.hasNames)
        xml += QLatin1String("<identifyingProperties>") +
               property(QStringLiteral("name"), QStringLiteral("n%1").arg(number)) +
               QLatin1String("</identifyingProperties>");
    return xml;
}

// The numbers of an element's children follow those of the children of all before it. One element
// is at the top.
QString elementXml(int number, const Shape &shape)
{
    QString children;
    for (int i = 1; i <= fanOut && number * fanOut + i < elementCount; ++i)
        children += elementXml(number * fanOut + i, shape);
    return startOf(number, shape) + QLatin1String("<children>") + children +
           QLatin1String("</children></element>");
}

QString treeXml(const Shape &shape)
{
    return QLatin1String("<ui><execution><state>") + elementXml(0, shape) +
           QLatin1String("</state></execution></ui>");
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

// Both trees and the checks are read, as those of a verification are.
struct Comparison
{
    explicit Comparison(const Shape &shape)
        : live(nullptr, QStringLiteral("live"))
    {
        const QString tree = treeXml(shape);
        const bool isRead = BrowserElement::readXML(&live, tree.toUtf8(), nullptr);
        QDomDocument document;
        document.setContent(QStringLiteral("<Verification><visual>") + tree +
                            checksXml("identifying", &BrowserElement::identifyingProperties) +
                            checksXml("content", &BrowserElement::properties) +
                            checksXml("geometry", nullptr) +
                            QStringLiteral("</visual></Verification>"));
        if (!isRead || !body.read(document.documentElement()))
            std::abort();
    }

    // Those of the geometry when there is no function.
    QString checksXml(const char *type, PropertiesOf propertiesOf) const
    {
        return QStringLiteral("<check type='%1'>").arg(QLatin1String(type)) +
               checksBelow(live, propertiesOf) + QLatin1String("</check>");
    }

    static QString checksBelow(const BrowserElement &parent, PropertiesOf propertiesOf)
    {
        static const QStringList geometryNames{QStringLiteral("x"), QStringLiteral("y"),
                                               QStringLiteral("width"), QStringLiteral("height")};
        QString xml;
        for (const BrowserElement *element : parent.children()) {
            const QStringList names =
                propertiesOf ? QStringList((element->*propertiesOf)().keys()) : geometryNames;
            if (!names.isEmpty())
                xml += verification(*element, names);
            xml += checksBelow(*element, propertiesOf);
        }
        return xml;
    }

    static QString verification(const BrowserElement &element, const QStringList &names)
    {
        QString xml =
            QStringLiteral("<PropertyVerification element-id='%1'>").arg(element.id().toString());
        for (const QString &name : names)
            xml += QStringLiteral("<VerifyProperty name='%1' type='equal'/>").arg(name);
        return xml + QLatin1String("</PropertyVerification>");
    }

    bool run()
    {
        QMap<BrowserElement::Id, TitanCompare> result;
        return body.compare(&live, &result);
    }

    VisualBody body;
    BrowserElement live;
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
    const VisualBody &body;
    long long pairs = 0;
    int found = 0;

    void evaluate(const BrowserElement *expected, const BrowserElement *actual)
    {
        ++pairs;
        if (expected->className() != actual->className())
            return;
        const BrowserElement::Id id = expected->id();
        const auto identifying = body.identifying.find(id);
        if (identifying != body.identifying.end() &&
            differences(expected->identifyingProperties(), actual->identifyingProperties(),
                        *identifying) > 0)
            return;
        const auto content = body.content.find(id);
        if (content != body.content.end())
            found += differences(expected->properties(), actual->properties(), *content);
        const auto geometry = body.geometry.find(id);
        if (geometry != body.geometry.end())
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
                if (!areEqual(&comparison.body.stored, &comparison.live))
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
                PlainEvaluation plain{comparison.body};
                plain.evaluate(&comparison.body.stored, &comparison.live);
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
