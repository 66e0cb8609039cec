#include "inventorywindow.h"

#include <QAction>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QSpinBox>
#include <QStatusBar>
#include <QTableWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

// Counting takes its time.
const int countingTime = 300;
// Fewer pieces of an article are few.
const int enough = 10;
const QSize pictureSize(200, 60);

// A bar for each article, without letters: these look different from machine to machine.
QPixmap pictureOf(const QList<int> &counts)
{
    QPixmap picture(pictureSize);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    int x = 5;
    for (const int count : counts) {
        const int height = qBound(1, count, pictureSize.height() - 10);
        painter.fillRect(x, pictureSize.height() - 5 - height, 20, height,
                         count < enough ? QColor(200, 60, 40) : QColor(40, 120, 60));
        x += 25;
    }
    return picture;
}

template <typename Widget>
Widget *named(Widget *widget, const char *name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

} // namespace

InventoryWindow::InventoryWindow()
    : m_table(named(new QTableWidget(0, 2), "articles"))
    , m_groups(named(new QTreeWidget, "groups"))
    , m_name(named(new QLineEdit, "name"))
    , m_count(named(new QSpinBox, "count"))
    , m_add(named(new QPushButton(tr("&Add")), "add"))
    , m_remove(nullptr)
    , m_picture(named(new QLabel, "picture"))
    , m_state(named(new QLabel, "state"))
{
    setObjectName(QStringLiteral("inventory"));
    setWindowTitle(tr("Inventory"));
    m_table->setHorizontalHeaderLabels({tr("Article"), tr("Count")});
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_count->setMaximum(9999);
    m_picture->setFixedSize(pictureSize);

    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    auto *lists = new QHBoxLayout;
    lists->addWidget(m_table);
    lists->addWidget(m_groups);
    layout->addLayout(lists);
    layout->addWidget(buildForm());
    layout->addWidget(m_picture);
    setCentralWidget(content);
    buildGroups();
    statusBar()->addWidget(m_state);
    buildMenu();

    addArticle(tr("Bolts"), 40);
    addArticle(tr("Nuts"), 35);
    addArticle(tr("Washers"), 5);
    showState();
}

void InventoryWindow::buildMenu()
{
    auto *stock = named(menuBar()->addMenu(tr("&Stock")), "stock");
    m_remove = named(stock->addAction(tr("&Remove")), "remove");
    connect(m_remove, &QAction::triggered, this, &InventoryWindow::removeSelected);
    QAction *countAction = named(stock->addAction(tr("&Count")), "countStock");
    connect(countAction, &QAction::triggered, this, &InventoryWindow::count);
}

// Groups are filled as they are opened.
void InventoryWindow::buildGroups()
{
    m_groups->setHeaderLabel(tr("Stock"));
    for (const QString &name : {tr("Enough"), tr("Running low")}) {
        auto *group = new QTreeWidgetItem(m_groups, {name});
        group->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    }
    connect(m_groups, &QTreeWidget::itemExpanded, this, &InventoryWindow::showGroups);
    connect(m_groups, &QTreeWidget::itemCollapsed, this, &InventoryWindow::showGroups);
}

QWidget *InventoryWindow::buildForm()
{
    auto *form = new QWidget;
    auto *layout = new QFormLayout(form);
    layout->addRow(tr("Article"), m_name);
    layout->addRow(tr("Count"), m_count);
    layout->addRow(m_add);
    connect(m_add, &QPushButton::clicked, this, &InventoryWindow::addFromForm);
    connect(m_name, &QLineEdit::textChanged, this, &InventoryWindow::showState);
    return form;
}

void InventoryWindow::addArticle(const QString &name, int count)
{
    const int row = m_table->rowCount();
    m_table->insertRow(row);
    m_table->setItem(row, 0, new QTableWidgetItem(name));
    m_table->setItem(row, 1, new QTableWidgetItem(QString::number(count)));
}

void InventoryWindow::addFromForm()
{
    addArticle(m_name->text(), m_count->value());
    m_name->clear();
    m_count->setValue(0);
    showState();
}

void InventoryWindow::removeSelected()
{
    m_table->removeRow(m_table->currentRow());
    showState();
}

void InventoryWindow::count()
{
    m_state->setText(tr("Counting"));
    QTimer::singleShot(countingTime, this,
                       [this] { m_state->setText(tr("%1 pieces").arg(totalCount())); });
}

int InventoryWindow::countOf(int row) const
{
    return m_table->item(row, 1)->text().toInt();
}

int InventoryWindow::totalCount() const
{
    int total = 0;
    for (int row = 0; row < m_table->rowCount(); ++row)
        total += countOf(row);
    return total;
}

void InventoryWindow::showGroups()
{
    for (int i = 0; i < m_groups->topLevelItemCount(); ++i) {
        QTreeWidgetItem *group = m_groups->topLevelItem(i);
        qDeleteAll(group->takeChildren());
        for (int row = 0; group->isExpanded() && row < m_table->rowCount(); ++row) {
            if ((countOf(row) < enough) == (i == 1))
                new QTreeWidgetItem(group, {m_table->item(row, 0)->text()});
        }
    }
}

void InventoryWindow::showState()
{
    QList<int> counts;
    for (int row = 0; row < m_table->rowCount(); ++row)
        counts += countOf(row);
    m_picture->setPixmap(pictureOf(counts));
    m_state->setText(tr("%1 articles").arg(counts.size()));
    m_add->setEnabled(!m_name->text().trimmed().isEmpty());
    m_remove->setEnabled(!counts.isEmpty());
    showGroups();
}
