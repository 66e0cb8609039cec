#include "fuzzinput.h"

#include "qtbackend/qtinspector.h"
#include "test/dummyrunnerinterface.h"
#include "test/nullreportgenerator.h"
#include "test/objectnameresolverinterface.h"
#include "test/testvp.h"

#include <QApplication>
#include <QTableWidget>

using namespace Morvex;

namespace {

class Resolver : public ObjectNameResolverInterface
{
public:
    SharedPtr<Object> resolve(const QString &, QString *error) override
    {
        return Inspector::self()->findObject(QStringLiteral("table"), error);
    }
    bool allowsSeveralObjects() const override { return true; }
};

class Runner : public DummyRunnerInterface
{
public:
    using DummyRunnerInterface::DummyRunnerInterface;
    // Nothing can be stored there.
    QString resultDirectory() override { return QStringLiteral("/dev/null/results"); }
};

// A small window, and an installation without comparison applications.
struct Surroundings
{
    Surroundings()
    {
        table.setObjectName(QStringLiteral("table"));
        table.setFixedSize(30, 30);
        Inspector::install(&inspector);
    }

    static const char *platform()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("MORVEX_PREFIX", "/dev/null/prefix");
        return "fuzzer";
    }

    char *arguments[2] = {const_cast<char *>(platform()), nullptr};
    int count = 1;
    QApplication application{count, arguments};
    QTableWidget table{2, 2};
    QtInspector inspector;
};

} // namespace

// The first byte says whether to learn.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    static Surroundings surroundings;
    if (size == 0)
        return 0;
    qputenv("MORVEX_LEARN_SCREENSHOTS", data[0] & 1 ? "1" : "0");
    TestResult log(new NullReportGenerator);
    log.start(QStringLiteral("fuzz"), QString(), QString());
    Runner runner(&log);
    Resolver resolver;
    VerificationOptions options;
    options.setScreenshotDelay(0);
    TestVP(QStringLiteral("vp"), fuzzInputFile(data + 1, size - 1, "vp.xml"))
        .verify(&log, {}, &runner, QString(), &resolver, options, nullptr, false);
    return 0;
}
