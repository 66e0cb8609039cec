// What it takes to parse a table of 20,000 rows, and the difference of two with some changes,
// against the scan of equal ones.

#include "ratio.h"
#include "shared/xmltablerange.h"
#include "test/tablediff.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <string>

using namespace Morvex;

namespace {

const int rows = 20000;

std::string tableXml(int changes)
{
    std::string xml = "<table hasText=\"1\">";
    for (int row = 0; row < rows; ++row) {
        const bool isChanged = changes > 0 && row % (rows / changes) == rows / changes / 2;
        xml += "<row><cell><text>" + std::to_string(row) + "</text></cell><cell><text>" +
               (isChanged ? "changed" : "same") + "</text></cell></row>";
    }
    return xml + "</table>";
}

void difference(benchmark::State &state)
{
    const int changes = static_cast<int>(state.range(0));
    XmlTableRange expected;
    XmlTableRange equal;
    XmlTableRange actual;
    if (!expected.loadContentFromXml(tableXml(0)) || !equal.loadContentFromXml(tableXml(0)) ||
        !actual.loadContentFromXml(tableXml(changes)))
        std::abort();
    MorvexBenchmark::Ratio ratio;
    for (auto _ : state) {
        state.SetIterationTime(ratio.measure(
            [&] {
                FList<TableDiff::Element> list;
                table_diff_range(expected, actual, &list);
                if (list.count() != 2 * changes)
                    std::abort();
            },
            [&] {
                FList<TableDiff::Element> list;
                table_diff_range(expected, equal, &list);
            }));
    }
    state.counters["ratio_to_scan"] = ratio.value();
}
BENCHMARK(difference)->Arg(1)->Arg(10)->Arg(100)->UseManualTime()->Unit(benchmark::kMillisecond);

// Against a scan for the tags alone.
void parsing(benchmark::State &state)
{
    const std::string xml = tableXml(0);
    MorvexBenchmark::Ratio ratio;
    for (auto _ : state) {
        state.SetIterationTime(ratio.measure(
            [&] {
                XmlTableRange range;
                if (!range.loadContentFromXml(xml) || range.rowCount() != rows)
                    std::abort();
            },
            [&] { benchmark::DoNotOptimize(std::count(xml.begin(), xml.end(), '<')); }));
    }
    state.counters["ratio_to_scan_for_tags"] = ratio.value();
}
BENCHMARK(parsing)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
