#include "awkwardplugin.h"

#include <QDialog>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <cstdio>
#include <cstdlib>

AwkwardWindow::AwkwardWindow()
{
    setObjectName("awkward");
    auto *layout = new QVBoxLayout(this);
    setLayout(layout);
    addButton("exit", &AwkwardWindow::exitAtOnce);
    addButton("print", &AwkwardWindow::printLine);
    addButton("exec", &AwkwardWindow::execDialog);
}

void AwkwardWindow::setLevel(int level)
{
    QTimer::singleShot(0, this, [this, level] { m_level = level; });
}

void AwkwardWindow::addButton(const char *name, void (AwkwardWindow::*action)())
{
    auto *button = new QPushButton(name);
    button->setObjectName(name);
    layout()->addWidget(button);
    connect(button, &QPushButton::clicked, this, action);
}

void AwkwardWindow::exitAtOnce()
{
    std::exit(0);
}

void AwkwardWindow::printLine()
{
    std::puts("of the application");
}

void AwkwardWindow::execDialog()
{
    QDialog dialog(this);
    dialog.exec();
}

QString AwkwardPlugin::start(const QStringList &arguments)
{
    if (arguments.contains("exit"))
        std::exit(0);
    m_window = std::make_unique<AwkwardWindow>();
    m_window->show();
    return {};
}

void AwkwardPlugin::stop()
{
    m_window.reset();
}
