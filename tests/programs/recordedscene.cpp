// Shows a file of Qt Quick: in a window of its own, without any widget and with more width and
// height than the file says when a number follows, or with "widget" after it below a button.
#include <QApplication>
#include <QPushButton>
#include <QQmlApplicationEngine>
#include <QQuickWidget>
#include <QVBoxLayout>
#include <QWindow>

#include <memory>

namespace {

int showInWidget(const QUrl &file)
{
    QWidget window;
    window.setWindowTitle("Widgets");
    window.resize(500, 400);
    QVBoxLayout layout(&window);
    QPushButton button("Native");
    QQuickWidget scene(file);
    scene.setResizeMode(QQuickWidget::SizeRootObjectToView);
    layout.addWidget(&button);
    layout.addWidget(&scene);
    window.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    const bool isInWidget = argc > 2 && QByteArray(argv[2]) == "widget";
    const std::unique_ptr<QGuiApplication> application(
        isInWidget ? new QApplication(argc, argv) : new QGuiApplication(argc, argv));
    const QUrl file = QUrl::fromLocalFile(argv[1]);
    if (isInWidget)
        return showInWidget(file);
    QQmlApplicationEngine engine(file);
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        const int more = argc > 2 ? QByteArray(argv[2]).toInt() : 0;
        window->resize(window->size() + QSize(more, more));
    }
    return QGuiApplication::exec();
}
