// A window with one of each kind of widget, at places that depend on no font. With an argument just
// a button, as a second application, or what is dragged.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QSlider>
#include <QTabWidget>
#include <QTextEdit>
#include <QTimer>

#include <cstdlib>

namespace {

template <typename Widget>
Widget *placed(Widget *widget, const char *name, const QRect &place)
{
    widget->setObjectName(name);
    widget->setGeometry(place);
    return widget;
}

class Canvas : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void mousePressEvent(QMouseEvent *) override {}
};

void fill(QWidget *window)
{
    auto *size = placed(new QComboBox(window), "size", {10, 10, 120, 30});
    size->addItems({"Small", "Medium", "Large"});
    auto *secret = placed(new QLineEdit(window), "secret", {140, 10, 120, 30});
    secret->setEchoMode(QLineEdit::Password);
    auto *colours = placed(new QListWidget(window), "colours", {10, 50, 120, 90});
    for (const char *name : {"Red", "Green"})
        (new QListWidgetItem(name, colours))->setCheckState(Qt::Unchecked);
    auto *pages = placed(new QTabWidget(window), "pages", {140, 50, 240, 90});
    pages->setStyleSheet("QTabBar::tab { width: 80px; height: 25px; }");
    pages->addTab(new QWidget, "One");
    pages->addTab(new QTextEdit, "Two");
    placed(new QSlider(Qt::Horizontal, window), "level", {10, 150, 120, 20});
    placed(new QCheckBox("&On", window), "on", {140, 150, 100, 20});
    placed(new Canvas(window), "canvas", {250, 150, 130, 50});
    auto *more = placed(new QPushButton("More", window), "more", {10, 180, 120, 30});
    more->setContextMenuPolicy(Qt::ActionsContextMenu);
    more->addAction(new QAction("Less", more));
    auto *later = placed(new QPushButton("Later", window), "later", {10, 220, 120, 30});
    later->setEnabled(false);
    QObject::connect(more, &QPushButton::clicked, later, [later] {
        QTimer::singleShot(900, later, [later] { later->setEnabled(true); });
    });
    // What the application does by itself.
    QObject::connect(later, &QPushButton::clicked, size, [size] { size->setCurrentIndex(0); });
    auto *second = placed(new QPushButton("Second", window), "second", {140, 220, 100, 30});
    QObject::connect(second, &QPushButton::clicked, [] {
        QProcess::startDetached(QCoreApplication::applicationFilePath(), {"second"});
    });
    auto *ends = placed(new QListWidget(window), "ends", {250, 220, 100, 30});
    ends->addItem("Crash");
    QObject::connect(ends, &QListWidget::itemDoubleClicked, [] { std::abort(); });
}

// What is dragged.
void fillForDrags(QWidget *window)
{
    for (const int right : {0, 1}) {
        auto *list = placed(new QListWidget(window), right ? "right" : "left",
                            {10 + right * 190, 10, 180, 90});
        list->setDragDropMode(QAbstractItemView::DragDrop);
        list->setDefaultDropAction(Qt::MoveAction);
        list->addItems(right ? QStringList{"one"} : QStringList{"apple", "pear"});
    }
    for (const char *name : {"first", "second"})
        placed(new QPlainTextEdit("alpha beta gamma", window), name,
               {10, *name == 'f' ? 110 : 150, 180, 35});
    auto *area = placed(new QMdiArea(window), "area", {200, 110, 180, 140});
    QMdiSubWindow *inner = area->addSubWindow(new QPushButton("Inside"));
    placed(inner, "inner", {0, 0, 150, 100});
    placed(new QLabel("-", window), "closed", {10, 200, 100, 30});
    QObject::connect(inner, &QObject::destroyed, window,
                     [window] { window->findChild<QLabel *>("closed")->setText("closed"); });
    inner->setAttribute(Qt::WA_DeleteOnClose);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QWidget window;
    const bool isForDrags = argc > 1 && QByteArray(argv[1]) == "drags";
    const bool isSecond = argc > 1 && !isForDrags;
    window.setWindowTitle(isSecond ? "Other" : "Recorded");
    window.setObjectName(isSecond ? "otherWindow" : "window");
    window.setFixedSize(isSecond ? QSize(200, 60) : QSize(390, 260));
    if (isSecond) {
        auto *quit = placed(new QPushButton("Quit", &window), "quit", {10, 10, 100, 30});
        QObject::connect(quit, &QPushButton::clicked, &application, &QApplication::quit);
    } else if (isForDrags) {
        fillForDrags(&window);
    } else {
        fill(&window);
    }
    window.show();
    return QApplication::exec();
}
