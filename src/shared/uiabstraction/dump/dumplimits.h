#pragma once

#include <QDataStream>

namespace Morvex::UIAbstraction {

/// The version of the stream form that both sides of a dump agree on.
const int dumpStreamVersion = QDataStream::Qt_4_9;
static_assert(dumpStreamVersion == 12);

/// One warning that elements below the deepest level are left out.
void warnOfDeepElements();

} // namespace Morvex::UIAbstraction
