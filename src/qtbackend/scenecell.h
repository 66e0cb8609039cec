#pragma once

class QObject;

namespace Morvex {

// Tables of Qt Quick, which have a row and a column for each item and no number.

struct SceneCell
{
    int row = -1;
    int column = -1;
};

/// False for null.
bool isSceneTable(const QObject *view);

/// Negative for an item that is no cell.
SceneCell sceneCellOf(const QObject *delegate);

} // namespace Morvex
