#include "shared/visual/cmpresult.h"

#include <algorithm>
#include <limits>

namespace Morvex {
namespace {

const int mismatchScore = 4000;
const int screenshotScore = 20;
const int geometryScore = 50;
const int contentScore = 100;
const int identifyingScore = 600;
const int hierarchyScore = 200;

} // namespace

CmpResult cleanResult()
{
    CmpResult result;
    result.areChildrenClean = true;
    return result;
}

CmpResult mismatchResult()
{
    CmpResult result;
    fail(TitanCompare::ClassMismatch | TitanCompare::HierarchyCheck, &result);
    result.score = mismatchScore;
    return result;
}

void fail(int checks, CmpResult *result)
{
    result->failed |= checks;
    result->returned |= checks;
}

int scoreOf(const CmpResult &result)
{
    qint64 score = 0;
    if (result.returned & TitanCompare::ScreenshotCheck)
        score += screenshotScore;
    if (result.returned & TitanCompare::GeometryCheck)
        score += geometryScore;
    if (result.returned & TitanCompare::ContentCheck)
        score += contentScore * (qint64(result.contentFailures.count) + 1);
    if (result.returned & TitanCompare::IdentifyingCheck)
        score += identifyingScore * (qint64(result.identifyingFailures.count) + 1);
    if (result.returned & TitanCompare::HierarchyCheck)
        score += hierarchyScore;
    return int(std::min<qint64>(score, std::numeric_limits<int>::max()));
}

} // namespace Morvex
