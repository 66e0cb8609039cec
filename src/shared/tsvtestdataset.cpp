#include "shared/tsvtestdataset.h"

#include "shared/tsvparser.h"

namespace Morvex {

TsvTestDataSet::TsvTestDataSet(const QString &fileName, char sep)
    : TestDataSet(fileName, sep, false)
{
    TsvParser parser(fileName);
    parse(&parser, sep);
}

TsvTestDataSet::TsvTestDataSet(TsvParser *parser, char sep)
    : TestDataSet(parser->name(), sep, false)
{
    parser->rewind();
    parse(parser, sep);
}

TsvTestDataSet::~TsvTestDataSet() = default;

void TsvTestDataSet::parse(TsvParser *parser, char sep)
{
    while (parser->readRecord(this, sep)) {
    }
    setErrorText(parser->errorText());
    if (header())
        return;
    auto *defaultHeader = new TestDataRecord(this, -1);
    defaultHeader->addValue(QStringLiteral("1"));
    setHeader(defaultHeader);
}

} // namespace Morvex
