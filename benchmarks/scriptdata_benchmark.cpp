// A script that opens a table and walks its records, against the same in a common script language:
// the time within each script, without the starts of the two programs.

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <limits>

namespace {

const int records = 200000;
const int rounds = 3;

const char ownScript[] = "var start = Date.now(), sum = 0;\n"
                         "for (var record of data.open('table.csv'))\n"
                         "    sum += Number(record.field('amount'));\n"
                         "log.info('took ' + (Date.now() - start) + ' ms');\n";

const char peerScript[] = "import csv, time\n"
                          "start = time.perf_counter()\n"
                          "total = 0\n"
                          "with open('table.csv', encoding='utf-8', newline='') as file:\n"
                          "    for record in csv.DictReader(file):\n"
                          "        total += float(record['amount'])\n"
                          "print('took', (time.perf_counter() - start) * 1000, 'ms')\n";

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("Can't write %s", qUtf8Printable(path));
}

// In milliseconds, as the script prints it.
double timeOf(const QString &program, const QStringList &arguments)
{
    static const QRegularExpression took(QStringLiteral("took ([0-9.]+) ms"));
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(-1);
    const QString time = took.match(QString::fromUtf8(process.readAllStandardOutput())).captured(1);
    return time.isEmpty() ? std::numeric_limits<double>::quiet_NaN() : time.toDouble();
}

void tableInAScript(benchmark::State &state)
{
    const QTemporaryDir suite;
    QByteArray table = "name,amount,colour,size,place\n";
    for (int i = 0; i < records; ++i)
        table += "item " + QByteArray::number(i) + ',' + QByteArray::number(i % 97) + ",red,10,B\n";
    QDir(suite.path()).mkdir(QStringLiteral("tst_a"));
    write(suite.filePath(QStringLiteral("table.csv")), table);
    write(suite.filePath(QStringLiteral("tst_a/script.js")), ownScript);
    QDir::setCurrent(suite.path());
    double own = std::numeric_limits<double>::max();
    double peer = own;
    for ([[maybe_unused]] auto _ : state) {
        for (int round = 0; round < rounds; ++round) {
            own = std::min(own, timeOf(QStringLiteral(MORVEX_BENCHMARK_PREFIX "/bin/morvexrunner"),
                                       {QStringLiteral("--testcase"), QStringLiteral("tst_a")}));
            peer = std::min(peer, timeOf(QStringLiteral("python3"),
                                         {QStringLiteral("-c"), QString::fromLatin1(peerScript)}));
        }
    }
    QDir::setCurrent(QStringLiteral("/"));
    state.counters["us_per_record"] = own * 1000 / records;
    state.counters["ratio_to_python_csv"] = own / peer;
}

} // namespace

BENCHMARK(tableInAScript)->Iterations(1)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
