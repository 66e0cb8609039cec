#include "support/test.h"
#include "test/testreportgeneratorfactory.h"

#include <QRegularExpression>

using namespace Morvex;
using namespace MorvexTest;

namespace {

// The line of the table in docs/formats.md that has the keyword in its first column.
QString lineFor(QLatin1String keyword)
{
    const QByteArray text = readFile(QStringLiteral(MORVEX_SOURCE_DIR "/docs/formats.md"));
    const QRegularExpression line("^\\| [^|]*`" + QRegularExpression::escape(keyword) + "`.*$",
                                  QRegularExpression::MultilineOption);
    return line.match(QString::fromUtf8(text)).captured();
}

} // namespace

TEST(FormatsDocument, SaysOfEachFormatWhatTheTableOfFormatsDoes)
{
    for (const auto &keyword : TestReportGeneratorFactory::keywords()) {
        if (keyword.description.isEmpty())
            continue;
        SCOPED_TRACE(keyword.name.data());
        const QString line = lineFor(keyword.name);
        ASSERT_FALSE(line.isEmpty());
        const bool freeName = keyword.traits.testFlag(TestReportGeneratorFactory::TakesFreeName);
        EXPECT_EQ(line.contains("is left alone"), freeName);
        const bool isDirectory = keyword.target == TestReportGeneratorFactory::Directory;
        EXPECT_EQ(line.contains(", a directory |"), isDirectory);
        if (keyword.traits.testFlag(TestReportGeneratorFactory::Grows)) {
            EXPECT_FALSE(line.contains("at the end"));
        }
    }
}
