#include "qtbackend/latechanges.h"

#include "qtbackend/objecttree.h"
#include "qtbackend/toolbarextension.h"

#include <QEvent>
#include <QWidget>

namespace Morvex {
namespace {

// Those that no user has used are forgotten at some time.
const int maxChanges = 10000;

// As long as what a user does may take of itself, also when it is repeated by a script.
const int usualMs = 400;

} // namespace

void LateChanges::settle()
{
    m_isSettled = true;
    m_scenes.settle();
}

void LateChanges::note(QObject *receiver, const QEvent &event)
{
    const bool isUsual = m_sinceAction.isValid() && m_sinceAction.elapsed() < usualMs;
    if (!m_isSettled || isUsual || !receiver->isWidgetType())
        return;
    const bool isShown = event.type() == QEvent::Show;
    if (!isShown && !static_cast<QWidget *>(receiver)->isEnabled())
        return;
    if (m_changes.size() >= maxChanges)
        m_changes.clear();
    Change &change = m_changes[receiver];
    if (change.object != receiver)
        change = {receiver};
    (isShown ? change.isShown : change.isEnabled) = true;
}

QStringList LateChanges::take(const QObject *object)
{
    if (isSceneItem(object))
        return m_scenes.of(object);
    const Change change = m_changes.take(object);
    QStringList properties;
    const auto *widget = qobject_cast<const QWidget *>(change.object.data());
    // A tool bar that has been unfolded shows more.
    if (change.object && change.isShown && !(widget && isInToolBar(widget)))
        properties += QStringLiteral("visible");
    if (change.object && change.isEnabled)
        properties += QStringLiteral("enabled");
    return properties;
}

} // namespace Morvex
