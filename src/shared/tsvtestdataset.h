#pragma once

#include "morvex_export.h"
#include "shared/testdata.h"

namespace Morvex {

class TsvParser;

/// The table of a delimited file, read at construction up to the first empty line. Without any line
/// the header has the single field "1".
class MORVEX_EXPORT TsvTestDataSet : public TestDataSet
{
public:
    TsvTestDataSet(const QString &fileName, char sep);
    /// Reads the file of @p parser from its start. The parser is needed during the call only.
    TsvTestDataSet(TsvParser *parser, char sep);
    ~TsvTestDataSet() override;

private:
    void parse(TsvParser *parser, char sep);
};

} // namespace Morvex
