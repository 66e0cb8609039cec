#pragma once

#include <QStringList>
#include <QVector>
#include <QWidget>

/// The application of tests that need one that behaves badly. Each button does what its name says.
class AwkwardWindow : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QStringList many READ many)
    Q_PROPERTY(short shortNumber READ shortNumber CONSTANT)
    Q_PROPERTY(uchar byteNumber READ byteNumber WRITE setByteNumber)
    Q_PROPERTY(char charNumber READ charNumber CONSTANT)
    Q_PROPERTY(long longNumber READ longNumber CONSTANT)
    Q_PROPERTY(qulonglong hugeNumber READ hugeNumber WRITE setHugeNumber)
    Q_PROPERTY(float floatNumber READ floatNumber CONSTANT)
    Q_PROPERTY(int level READ level WRITE setLevel)
    Q_PROPERTY(int child READ child)

public:
    AwkwardWindow();

    short shortNumber() const { return -5; }
    float floatNumber() const { return 0.1f; }
    uchar byteNumber() const { return m_byteNumber; }
    void setByteNumber(uchar number) { m_byteNumber = number; }
    char charNumber() const { return 65; }
    long longNumber() const { return 5000000000; }
    qulonglong hugeNumber() const { return m_hugeNumber; }
    void setHugeNumber(qulonglong number) { m_hugeNumber = number; }
    int level() const { return m_level; }
    /// The process that the button has left.
    int child() const { return m_child; }
    /// More than an answer may hold.
    QStringList many() const { return QVector<QString>(2000001).toList(); }
    /// Takes effect when the event loop turns.
    void setLevel(int level);

private:
    void addFields();
    void addButton(const char *name, void (AwkwardWindow::*action)());
    void exitAtOnce();
    void forkAndEnd();
    void printLine();
    void execDialog();
    void crash();
    void crashAtExit();
    void forkAndGoOn();
    void leaveProcess();
    void quit();
    void sleep();
    void restart();
    void startAnother();
    void openWindows();
    void changeAllTheTime();
    void deleteTheButton();

    uchar m_byteNumber = 200;
    qulonglong m_hugeNumber = 6000000000;
    int m_level = 0;
    int m_child = 0;
};
