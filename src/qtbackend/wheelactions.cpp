#include "qtbackend/wheelactions.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/recordedtarget.h"
#include "qtbackend/widgetvalue.h"

namespace Morvex {

void WheelActions::begin()
{
    m_isTurning = true;
}

void WheelActions::turn(QWidget *widget)
{
    QWidget *owner = ownerOf(widget);
    const QVariant value = m_isTurning ? valueOf(owner) : QVariant();
    if (!value.isValid() || !owner->isEnabled())
        return;
    for (const Turned &known : m_turned) {
        if (known.widget == owner)
            return;
    }
    // To find a name takes long, and the wheel comes often.
    const bool isSame = m_changed == owner && m_number == m_report.lastNumber();
    m_turned.push_back({owner, isSame ? m_name : QString(), value});
}

void WheelActions::settle()
{
    m_isTurning = false;
    const std::vector<Turned> turned = std::move(m_turned);
    m_turned.clear();
    for (const Turned &one : turned) {
        if (one.widget && valueOf(one.widget) != one.value)
            report(one);
    }
}

// What is turned further is one action.
void WheelActions::report(const Turned &turned)
{
    const ValueSetting setting = ValueSetting::of(turned.widget);
    const QString name = turned.name.isEmpty() ? m_report.nameOf(setting.object) : turned.name;
    if (m_changed == turned.widget && m_number == m_report.lastNumber())
        m_report.replace(m_number, setting.what, name, setting.more);
    else
        m_number = m_report.add(setting.what, name, setting.more);
    m_changed = turned.widget;
    m_name = name;
}

} // namespace Morvex
