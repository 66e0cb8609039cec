#include "qtbackend/pointmenu.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/identification.h"
#include "qtbackend/modeltablerange.h"
#include "qtbackend/recordedtarget.h"
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

QStringList propertiesOf(const QObject *object)
{
    const auto *button = qobject_cast<const QAbstractButton *>(object);
    QStringList names;
    for (const char *name : shownProperties) {
        const QVariant value = object->property(name);
        const bool isOf = qstrcmp(name, "checked") != 0 || !button || button->isCheckable();
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

} // namespace

PointMenu::~PointMenu()
{
    delete m_menu;
}

bool PointMenu::isOpenedBy(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers all = Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier;
    return event.key() == Qt::Key_V && (event.modifiers() & all) == all;
}

bool PointMenu::owns(const QObject *receiver) const
{
    return m_menu && (receiver == m_menu || receiver == m_menu->windowHandle());
}

void PointMenu::open()
{
    const QPoint place = QCursor::pos();
    QWidget *widget = isOpen() ? nullptr : QApplication::widgetAt(place);
    if (!widget)
        return;
    QWidget *object = ownerOf(widget);
    // What a check is about must not be a part of the name.
    const QString name =
        m_report.nameOf(object, qobject_cast<QAbstractButton *>(object) != nullptr);
    delete m_menu;
    m_menu = new QMenu;
    m_menu->setAttribute(Qt::WA_DeleteOnClose);
    m_menu->addSection(QString::fromLatin1(object->metaObject()->className()));
    add(QStringLiteral("Check properties"), PointType::properties, name, propertiesOf(object));
    if (ModelTableRange::isTable(object))
        add(QStringLiteral("Check table"), PointType::table, name, {});
    add(QStringLiteral("Check picture"), PointType::screenshot, name, {});
    add(QStringLiteral("Check look"), PointType::visual, name, {});
    m_menu->popup(place);
}

void PointMenu::add(const QString &text, QLatin1String type, const QString &name,
                    const QStringList &properties)
{
    const QVariantMap more{{QStringLiteral("type"), type},
                           {QStringLiteral("properties"), properties}};
    QObject::connect(m_menu->addAction(text), &QAction::triggered, m_menu,
                     [this, name, more] { m_report.add(QStringLiteral("point"), name, more); });
}

} // namespace Morvex
