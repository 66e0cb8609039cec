#pragma once

#include "shared/requestdumpobject.h"
#include "support/test.h"
#include "support/verification.h"
#include "test/titanvp.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace MorvexTest {

/// Nested layouts, tabs, a table and a tree.
struct Form
{
    Form()
    {
        window.resize(500, 400);
        form = new QGroupBox("Order", &window);
        form->setObjectName("form");
        form->setGeometry(10, 10, 400, 300);
        auto *rows = new QFormLayout;
        rows->addRow("&Name", name = new QLineEdit("a  b"));
        rows->addRow("Count", count = new QLabel("3"));
        rows->addRow("Price", price = new QSpinBox);
        rows->addRow("Unit", unit = new QComboBox);
        unit->setEditable(true);
        auto *tabs = new QTabWidget;
        tabs->addTab(table = new QTableWidget(2, 2), "Lines");
        tabs->addTab(new QTreeWidget, "Tree");
        table->setItem(0, 0, new QTableWidgetItem("Bolts"));
        auto *outer = new QVBoxLayout(form);
        outer->addLayout(rows);
        outer->addWidget(tabs);
        outer->addWidget(button = new QPushButton("Order now"));
        mark = new QLabel("!", form);
        mark->setGeometry(380, 2, 10, 10);
        window.show();
    }

    QWidget window;
    QGroupBox *form;
    QLineEdit *name;
    QLabel *count;
    QSpinBox *price;
    QComboBox *unit;
    QTableWidget *table;
    QPushButton *button;
    QLabel *mark;
};

/// Makes visual points of the group box "form" of a Form.
class VisualPointTest : public VerificationTest
{
protected:
    QByteArray learn()
    {
        QString error;
        const Morvex::SharedPtr<Morvex::Object> object = inspector.findObject("form", nullptr);
        const QByteArray dump = Morvex::requestObjectSnapshotForVisualVP(object, &error);
        EXPECT_TRUE(
            Morvex::createTitanVPFile(dump, QFileInfo(path("new/point.xml")), "form", &error))
            << error.toStdString();
        return readFile(path("new/point.xml"));
    }

private:
    EnvironmentGuard m_prefix{"MORVEX_PREFIX", MORVEX_TEST_PREFIX};
};

} // namespace MorvexTest
