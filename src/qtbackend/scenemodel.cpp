#include "qtbackend/scenemodel.h"

#include <QAbstractItemModel>
#include <QVariant>

#include <algorithm>

namespace Morvex {
namespace {

// Enough for what users take for the same, and few enough to be looked at with each click.
const int maxCells = 20000;

const QAbstractItemModel *itemModelOf(const QObject *view)
{
    return qobject_cast<QAbstractItemModel *>(view->property("model").value<QObject *>());
}

// Negative when the text is made of several values, or of none.
int roleFor(const QAbstractItemModel &model, const QModelIndex &index, const QString &text)
{
    const QList<int> roles = model.roleNames().keys();
    const auto found = std::find_if(roles.begin(), roles.end(),
                                    [&](int role) { return index.data(role).toString() == text; });
    return found == roles.end() ? -1 : *found;
}

// The text of an entry of a list, by the key that has it in the entry that is meant.
QString textOf(const QVariant &entry, const QString &key)
{
    return key.isEmpty() ? entry.toString() : entry.toMap().value(key).toString();
}

// The texts of all rows by what gives this row its text. Empty when nothing does.
QStringList textsLike(const QObject *view, int row, const QString &text)
{
    QStringList texts;
    if (const QAbstractItemModel *model = itemModelOf(view)) {
        const int role = roleFor(*model, model->index(row, 0), text);
        const int count = role < 0 ? 0 : std::min(model->rowCount(), maxCells);
        for (int i = 0; i < count; ++i)
            texts += model->index(i, 0).data(role).toString();
        return texts;
    }
    const QVariantList list = view->property("model").toList();
    const QVariant entry = list.value(row);
    const QString key = entry.toMap().key(text);
    if (list.size() > maxCells || textOf(entry, key) != text)
        return {};
    for (const QVariant &other : list)
        texts += textOf(other, key);
    return texts;
}

} // namespace

int occurrenceInModel(const QObject *view, int row, const QString &text)
{
    const QStringList texts = textsLike(view, row, text);
    return texts.count(text) > 1 ? static_cast<int>(texts.mid(0, row + 1).count(text)) : 0;
}

bool isRepeatedInModel(const QObject *table, int row, int column, const QString &text)
{
    const QAbstractItemModel *model = itemModelOf(table);
    const int role = model ? roleFor(*model, model->index(row, column), text) : -1;
    if (role < 0)
        return false;
    const int columns = model->columnCount();
    const int rows = std::min(model->rowCount(), maxCells / std::max(1, columns));
    int count = 0;
    for (int i = 0; i < rows && count < 2; ++i) {
        for (int j = 0; j < columns; ++j)
            count += model->index(i, j).data(role).toString() == text ? 1 : 0;
    }
    return count > 1;
}

} // namespace Morvex
