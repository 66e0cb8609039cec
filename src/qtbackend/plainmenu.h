#pragma once

#include <QRasterWindow>

#include <functional>
#include <utility>
#include <vector>

namespace Morvex {

/// A menu for applications without widgets, used with the mouse or the keys. It closes with the
/// choice, by Escape, and when another window becomes active.
class PlainMenu : public QRasterWindow
{
public:
    explicit PlainMenu(const QString &title);

    void add(const QString &text, const std::function<void()> &action);
    void popup(const QPoint &globalPlace);

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    int lineHeight() const;
    void setCurrent(int index);
    void choose();

    QString m_title;
    std::vector<std::pair<QString, std::function<void()>>> m_entries;
    int m_current = -1;
};

} // namespace Morvex
