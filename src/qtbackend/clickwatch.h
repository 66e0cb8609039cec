#pragma once

#include <QObject>
#include <QPointer>

#include <vector>

namespace Morvex {

/// Remembers what the user presses a mouse button on, from its construction on. The application
/// gets all events as ever.
class ClickWatch : public QObject
{
public:
    ClickWatch();

    /// Those since the last call that are still there, in the order of the clicks. Of a scroll
    /// area the whole, of a menu the action, of Qt Quick the item that the click is for.
    std::vector<QObject *> takeClicked();

    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    std::vector<QPointer<QObject>> m_clicked;
    // That of the last press, which goes on to the parents of what does not take it.
    ulong m_timestamp = 0;
};

} // namespace Morvex
