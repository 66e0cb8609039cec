#include "qtbackend/pressoutcome.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/recordedkeys.h"
#include "qtbackend/widgetvalue.h"

namespace Morvex {

PressOutcome::PressOutcome(const RecordedTarget &target, const ActionReport &report)
    : m_target(target)
{
    auto *widget = qobject_cast<QWidget *>(target.object);
    const bool isChanged =
        target.kind == RecordedTarget::Cursor || target.kind == RecordedTarget::Value;
    if (!widget || !isChanged)
        return;
    m_name = report.nameOf(ownerOf(widget));
    m_cursor = TextCursorState::of(widget);
    m_value = valueOf(widget);
}

void PressOutcome::setReported(int number, const QVariantMap &more, const QModelIndex &index,
                               const BarMove &move, const ActionReport &report)
{
    m_number = number;
    m_more = more;
    m_index = index;
    m_checkState = index.data(Qt::CheckStateRole);
    m_move = move;
    if (m_checkState.isValid() || move.isPossible())
        m_name = report.nameOf(m_target.object);
}

void PressOutcome::settle(ActionReport &report) const
{
    if (m_target.kind == RecordedTarget::Value)
        settleValue(report);
    else if (m_target.kind == RecordedTarget::Cursor)
        settleCursor(report);
    else if (!m_move.movedTo().isEmpty())
        settleMove(report);
    else if (m_target.kind == RecordedTarget::Click)
        settleCheck(report);
}

void PressOutcome::settleValue(ActionReport &report) const
{
    auto *widget = qobject_cast<QWidget *>(m_target.object);
    if (!widget || valueOf(widget) == m_value)
        return;
    const ValueSetting setting = ValueSetting::of(widget);
    report.add(setting.what, m_name, setting.more);
}

void PressOutcome::settleCursor(ActionReport &report) const
{
    auto *widget = qobject_cast<QWidget *>(m_target.object);
    const TextCursorState state = TextCursorState::of(widget);
    if (!widget || state == m_cursor)
        return;
    const QString keys = state.keys();
    // A place within a secret says how long it is.
    if (!isSecretInput(widget) || keys == QLatin1String("<Ctrl+A>"))
        report.addCursor(m_name, ownerOf(widget), keys);
}

void PressOutcome::settleCheck(ActionReport &report) const
{
    const QVariant state = m_index.data(Qt::CheckStateRole);
    if (!m_index.isValid() || state == m_checkState || !m_more.contains(QStringLiteral("item")))
        return;
    QVariantMap more = m_more;
    more.remove(QStringLiteral("x"));
    more.remove(QStringLiteral("y"));
    report.replace(m_number,
                   state.toInt() == Qt::Checked ? QStringLiteral("check")
                                                : QStringLiteral("uncheck"),
                   m_name, more);
}

void PressOutcome::settleMove(ActionReport &report) const
{
    QVariantMap more = m_more;
    more[QStringLiteral("to")] =
        QVariantMap{{QStringLiteral("object"), m_name}, {QStringLiteral("item"), m_move.movedTo()}};
    report.replace(m_number, QStringLiteral("drag"), m_name, more);
}

} // namespace Morvex
