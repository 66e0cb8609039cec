#include "test/multireportgenerator.h"

#include "test/output/multioutputdevice.h"

#include <memory>
#include <vector>

namespace Morvex {

MultiReportGenerator::MultiReportGenerator(const std::list<TestReportGenerator *> &generators)
    : m_generators(generators)
{
}

MultiReportGenerator::~MultiReportGenerator()
{
    for (TestReportGenerator *generator : m_generators)
        delete generator;
}

void MultiReportGenerator::generateSummary()
{
    for (TestReportGenerator *generator : m_generators)
        generator->generateSummary();
}

QIODeviceResult MultiReportGenerator::videoOutput(const QString &path)
{
    std::vector<std::unique_ptr<QIODevice>> devices;
    for (TestReportGenerator *generator : m_generators) {
        const QIODeviceResult result = generator->videoOutput(path);
        if (!result.error.isEmpty())
            return {nullptr, result.error};
        devices.emplace_back(result.device);
    }
    QList<QIODevice *> members;
    for (auto &device : devices)
        members += device.release();
    return {new MultiOutputDevice(members), QString()};
}

void MultiReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    // Each member closes its own sections.
    if (isAutomatic())
        return;
    for (TestReportGenerator *generator : m_generators)
        generator->handleEntry(entry);
}

} // namespace Morvex
