#include "qtbackend/scenewheel.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/recordedtarget.h"
#include "qtbackend/reportedplace.h"
#include "qtbackend/sceneaccess.h"
#include "qtbackend/scenehandlers.h"
#include "qtbackend/scenetarget.h"

#include <QWheelEvent>

namespace Morvex {
namespace {

const double angleOfStep = 120;

} // namespace

void SceneWheel::turn(QObject *root, const QWheelEvent &event)
{
    const QPoint place = event.position().toPoint();
    QObject *item = wheeledAt(root, place);
    if (!item || event.angleDelta().y() == 0)
        return;
    const bool isNext =
        item == m_item && m_number == m_report.lastNumber() && event.modifiers() == m_modifiers;
    const RecordedTarget target = sceneItemTarget(item);
    if (!isNext) {
        m_name = m_report.nameOf(target.object);
        m_steps = 0;
    }
    m_item = item;
    m_modifiers = event.modifiers();
    m_steps -= event.angleDelta().y() / angleOfStep;
    QVariantMap more = reportedPlace(target);
    addButtonTo(&more, Qt::LeftButton, m_modifiers);
    more[QStringLiteral("steps")] = m_steps;
    const QString what = QStringLiteral("wheel");
    if (isNext)
        m_report.replace(m_number, what, m_name, more);
    else
        m_number = m_report.add(what, m_name, more);
}

} // namespace Morvex
