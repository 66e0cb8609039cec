#include "qtbackend/plainmenu.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPalette>

#include <algorithm>

namespace Morvex {
namespace {

const int margin = 8;

} // namespace

PlainMenu::PlainMenu(const QString &title)
    : m_title(title)
{
    setFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setTitle(title);
}

void PlainMenu::add(const QString &text, const std::function<void()> &action)
{
    m_entries.emplace_back(text, action);
}

int PlainMenu::lineHeight() const
{
    return QFontMetrics(QGuiApplication::font()).height() + margin;
}

void PlainMenu::popup(const QPoint &globalPlace)
{
    const QFontMetrics metrics(QGuiApplication::font());
    int width = metrics.horizontalAdvance(m_title);
    for (const auto &entry : m_entries)
        width = std::max(width, metrics.horizontalAdvance(entry.first));
    setTransientParent(QGuiApplication::focusWindow());
    setGeometry(QRect(globalPlace, QSize(width + 4 * margin,
                                         lineHeight() * (static_cast<int>(m_entries.size()) + 1))));
    show();
    requestActivate();
}

// The title is the first line.
void PlainMenu::paintEvent(QPaintEvent *)
{
    const QPalette palette = QGuiApplication::palette();
    QPainter painter(this);
    painter.fillRect(QRect(QPoint(), size()), palette.window());
    for (int line = 0; line <= static_cast<int>(m_entries.size()); ++line) {
        const QRect place(0, line * lineHeight(), width(), lineHeight());
        const bool isCurrent = line > 0 && line - 1 == m_current;
        if (isCurrent)
            painter.fillRect(place, palette.highlight());
        painter.setPen(palette.color(line == 0   ? QPalette::Mid
                                     : isCurrent ? QPalette::HighlightedText
                                                 : QPalette::WindowText));
        painter.drawText(place.adjusted(2 * margin, 0, 0, 0), Qt::AlignVCenter,
                         line == 0 ? m_title : m_entries[static_cast<std::size_t>(line) - 1].first);
    }
}

void PlainMenu::setCurrent(int index)
{
    m_current = index;
    update();
}

void PlainMenu::choose()
{
    if (m_current < 0 || m_current >= static_cast<int>(m_entries.size()))
        return;
    hide();
    m_entries[static_cast<std::size_t>(m_current)].second();
}

void PlainMenu::keyPressEvent(QKeyEvent *event)
{
    const int count = static_cast<int>(m_entries.size());
    if (event->key() == Qt::Key_Down)
        setCurrent((m_current + 1) % count);
    else if (event->key() == Qt::Key_Up)
        setCurrent((std::max(m_current, 0) + count - 1) % count);
    else if (event->key() == Qt::Key_Escape)
        hide();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        choose();
}

void PlainMenu::mouseMoveEvent(QMouseEvent *event)
{
    setCurrent(event->y() / lineHeight() - 1);
}

void PlainMenu::mouseReleaseEvent(QMouseEvent *event)
{
    setCurrent(event->y() / lineHeight() - 1);
    choose();
}

void PlainMenu::focusOutEvent(QFocusEvent *)
{
    hide();
}

} // namespace Morvex
