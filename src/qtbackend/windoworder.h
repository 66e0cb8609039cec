#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <vector>

namespace Morvex {

/// The windows of the application that belong to no other one, in an order that does not change
/// from run to run as that of the toolkit does: as they were first shown. Those that never were
/// follow by name, title and class; among those that have all three in common the order may change.
class WindowOrder : public QObject
{
public:
    WindowOrder();

    QWidgetList windows() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void add(QWidget *window);

    std::vector<QPointer<QWidget>> m_shown;
    // The same by their addresses.
    QHash<const QWidget *, QPointer<QWidget>> m_known;
    std::size_t m_cleanUpAt = 1024;
};

} // namespace Morvex
