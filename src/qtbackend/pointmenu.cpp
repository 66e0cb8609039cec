#include "qtbackend/pointmenu.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/modeltablerange.h"
#include "qtbackend/objecttree.h"
#include "qtbackend/recordedtarget.h"
#include "qtbackend/scenetarget.h"
#include "qtbackend/secretinputs.h"
#include "shared/points/pointtypes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QCursor>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWindow>

namespace Morvex {
namespace {

// What users see of most widgets, under the names of the toolkit.
const char *const shownProperties[] = {"text",        "plainText", "title",   "windowTitle",
                                       "currentText", "value",     "checked", "enabled"};

const Qt::KeyboardModifiers modifiersOfKeys =
    Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier;
// Another window may get their release.
const int maxHeldMs = 2000;

// Layouts without a V have a letter of their own there.
const quint32 scanCodeOfV = 55;
const int firstOtherLetter = 0x100;
const int firstSpecialKey = 0x01000000;

QStringList propertiesOf(const QObject *object)
{
    const QVariant checkable = object->property("checkable");
    QStringList names;
    for (const char *name : shownProperties) {
        const QVariant value = object->property(name);
        const bool isOf =
            qstrcmp(name, "checked") != 0 || !checkable.isValid() || checkable.toBool();
        const bool isEmptyTitle = qstrcmp(name, "windowTitle") == 0 && value.toString().isEmpty();
        if (value.isValid() && isOf && !isEmptyTitle)
            names += QLatin1String(name);
    }
    const auto *box = qobject_cast<const QComboBox *>(object);
    if (hidesItsText(object) || (box && box->lineEdit() && hidesItsText(box->lineEdit()))) {
        names.removeAll(QStringLiteral("text"));
        names.removeAll(QStringLiteral("currentText"));
    }
    return names;
}

bool isButton(const QObject *object)
{
    return qobject_cast<const QAbstractButton *>(object) ||
           object->inherits("QQuickAbstractButton");
}

// Null where there is nothing of the application.
QObject *objectAt(const QPoint &place)
{
    QWidget *widget = QApplication::widgetAt(place);
    QWindow *window = widget ? nullptr : QGuiApplication::topLevelAt(place);
    if (QObject *root = widget ? sceneRootOf(widget) : nullptr)
        return sceneItemAt(root, widget->mapFromGlobal(place));
    if (QObject *root = window ? sceneRootOf(window) : nullptr)
        return sceneItemAt(root, window->mapFromGlobal(place));
    return widget ? ownerOf(widget) : nullptr;
}

} // namespace

PointMenu::PointMenu(ActionReport &report)
    : m_report(report)
{
    m_opening.setSingleShot(true);
    QObject::connect(&m_opening, &QTimer::timeout, &m_opening, [this] { open(); });
}

PointMenu::~PointMenu()
{
    delete m_menu;
}

bool PointMenu::isOpenedBy(const QKeyEvent &event)
{
    const bool isInPlaceOfV = event.key() >= firstOtherLetter && event.key() < firstSpecialKey &&
                              event.nativeScanCode() == scanCodeOfV;
    return (event.key() == Qt::Key_V || isInPlaceOfV) &&
           (event.modifiers() & modifiersOfKeys) == modifiersOfKeys;
}

bool PointMenu::owns(const QObject *receiver) const
{
    return (m_plainMenu && receiver == m_plainMenu.get()) ||
           (m_menu && (receiver == m_menu || receiver == m_menu->windowHandle()));
}

bool PointMenu::isOpen() const
{
    return (m_menu && m_menu->isVisible()) || (m_plainMenu && m_plainMenu->isVisible());
}

void PointMenu::expect()
{
    m_place = QCursor::pos();
    m_opening.start(maxHeldMs);
}

void PointMenu::release(const QKeyEvent &event)
{
    if (m_opening.isActive() && !(event.modifiers() & modifiersOfKeys))
        m_opening.start(0);
}

void PointMenu::open()
{
    QObject *object = isOpen() ? nullptr : objectAt(m_place);
    if (object)
        openFor(object, m_place);
}

void PointMenu::openFor(QObject *object, const QPoint &place)
{
    // What a check is about must not be a part of the name.
    const QString name = m_report.nameOf(object, isButton(object));
    const QString title = typeNameOf(object->metaObject());
    delete m_menu;
    m_plainMenu.reset();
    if (qobject_cast<QApplication *>(QCoreApplication::instance())) {
        m_menu = new QMenu;
        m_menu->setAttribute(Qt::WA_DeleteOnClose);
        m_menu->addSection(title);
    } else {
        m_plainMenu = std::make_unique<PlainMenu>(title);
    }
    add(QStringLiteral("Check properties"), PointType::properties, name, propertiesOf(object));
    auto *widget = qobject_cast<QWidget *>(object);
    if (widget && ModelTableRange::isTable(widget))
        add(QStringLiteral("Check table"), PointType::table, name, {});
    add(QStringLiteral("Check picture"), PointType::screenshot, name, {});
    if (widget)
        add(QStringLiteral("Check look"), PointType::visual, name, {});
    if (m_menu)
        m_menu->popup(place);
    else
        m_plainMenu->popup(place);
}

void PointMenu::add(const QString &text, QLatin1String type, const QString &name,
                    const QStringList &properties)
{
    const QVariantMap more{{QStringLiteral("type"), type},
                           {QStringLiteral("properties"), properties}};
    const auto report = [this, name, more] { m_report.add(QStringLiteral("point"), name, more); };
    if (m_menu)
        QObject::connect(m_menu->addAction(text), &QAction::triggered, m_menu, report);
    else
        m_plainMenu->add(text, report);
}

} // namespace Morvex
