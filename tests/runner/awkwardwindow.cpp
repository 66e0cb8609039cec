#include "awkwardwindow.h"

#include <QCoreApplication>
#include <QDateEdit>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFrame>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

AwkwardWindow::AwkwardWindow()
{
    setObjectName("awkward");
    auto *layout = new QVBoxLayout(this);
    setLayout(layout);
    addButton("exit", &AwkwardWindow::exitAtOnce);
    addButton("fork", &AwkwardWindow::forkAndEnd);
    addButton("print", &AwkwardWindow::printLine);
    addButton("exec", &AwkwardWindow::execDialog);
    addButton("crash", &AwkwardWindow::crash);
    addButton("crashAtExit", &AwkwardWindow::crashAtExit);
    addButton("forkOn", &AwkwardWindow::forkAndGoOn);
    addButton("leave", &AwkwardWindow::leaveProcess);
    addButton("quit", &AwkwardWindow::quit);
    addButton("sleep", &AwkwardWindow::sleep);
    addButton("restart", &AwkwardWindow::restart);
    addButton("another", &AwkwardWindow::startAnother);
    addButton("windows", &AwkwardWindow::openWindows);
    addButton("change", &AwkwardWindow::changeAllTheTime);
    addButton("delete", &AwkwardWindow::deleteTheButton);
    addFields();
}

void AwkwardWindow::setLevel(int level)
{
    QTimer::singleShot(0, this, [this, level] { m_level = level; });
}

void AwkwardWindow::addFields()
{
    auto *ratio = new QDoubleSpinBox;
    ratio->setObjectName("ratio");
    layout()->addWidget(ratio);
    auto *day = new QDateEdit;
    day->setObjectName("day");
    day->setMaximumDate(QDate(2030, 12, 31));
    layout()->addWidget(day);
    auto *secret = new QLineEdit("hush");
    secret->setObjectName("secret");
    secret->setEchoMode(QLineEdit::Password);
    layout()->addWidget(secret);
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

// One child ends itself, the other one is ended.
void AwkwardWindow::forkAndEnd()
{
    if (::fork() == 0)
        std::exit(0);
    const pid_t child = ::fork();
    while (child == 0)
        ::pause();
    ::kill(child, SIGTERM);
    while (::wait(nullptr) > 0) {
    }
}

void AwkwardWindow::printLine()
{
    std::puts("of the application");
    std::fflush(stdout);
}

void AwkwardWindow::execDialog()
{
    QDialog dialog(this);
    dialog.setObjectName("dialog");
    QPushButton closeButton("close", &dialog);
    closeButton.setObjectName("close");
    connect(&closeButton, &QPushButton::clicked, &dialog, &QDialog::accept);
    dialog.exec();
}

void AwkwardWindow::crash()
{
    ::signal(SIGSEGV, SIG_DFL);
    ::raise(SIGSEGV);
}

void AwkwardWindow::crashAtExit()
{
    std::atexit(std::abort);
}

// The child leaves its event loop and ends as the application would.
void AwkwardWindow::forkAndGoOn()
{
    const pid_t child = ::fork();
    if (child == 0)
        QCoreApplication::quit();
    else
        ::waitpid(child, nullptr, 0);
}

// One that has nothing to do with this one from then on.
void AwkwardWindow::leaveProcess()
{
    m_child = ::fork();
    if (m_child == 0) {
        ::setsid();
        ::signal(SIGTERM, SIG_IGN);
        for (;;)
            ::pause();
    }
}

void AwkwardWindow::quit()
{
    QCoreApplication::quit();
}

void AwkwardWindow::sleep()
{
    ::sleep(5);
}

void AwkwardWindow::restart()
{
    const QByteArray program = QFile::encodeName(QCoreApplication::applicationFilePath());
    ::execl(program.constData(), program.constData(), nullptr);
}

void AwkwardWindow::startAnother()
{
    QProcess::startDetached(QCoreApplication::applicationFilePath(), {});
}

void AwkwardWindow::openWindows()
{
    for (int i = 0; i < 10000; ++i) {
        auto *window = new QWidget;
        // Each has a backing store of its size; 10,000 of the default size take gigabytes.
        window->resize(8, 8);
        window->setAttribute(Qt::WA_DontShowOnScreen);
        window->show();
    }
}

void AwkwardWindow::changeAllTheTime()
{
    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this] {
        qDeleteAll(findChildren<QFrame *>(QStringLiteral("changing")));
        for (int i = 0; i < 100; ++i)
            (new QFrame(this))->setObjectName(QStringLiteral("changing"));
    });
    timer->start(0);
}

void AwkwardWindow::deleteTheButton()
{
    delete sender();
}
