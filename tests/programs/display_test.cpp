#include "support/display.h"
#include "support/files.h"
#include "support/scriptfixture.h"

#include <QImage>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace MorvexTest;

/// Under an X display, which a machine without one has to have programs for.
class DisplayTest : public ScriptFixture
{
protected:
    void SetUp() override
    {
        if (!Display::isPossible())
            GTEST_SKIP() << "Xvfb, openbox or xdotool is not installed";
        display = std::make_unique<Display>();
        display->addTo(&runner.environment);
    }

    // The place is in a picture of the display.
    static QColor colourAt(const QString &picture, const QString &place)
    {
        const QImage image(picture);
        EXPECT_EQ(image.size(), QSize(800, 600)) << picture.toStdString();
        return image.pixelColor(place.section(',', 0, 0).toInt(), place.section(',', 1).toInt());
    }

    std::unique_ptr<Display> display;
};

TEST_F(DisplayTest, PicturesShowTheDisplayAlsoWhenTheApplicationHasCrashed)
{
    runner.addFile("points/none.xml",
                   "<VerificationPoint version='5' type='ObjectProperties'><Verification "
                   "object='awkward' property='level'>1</Verification></VerificationPoint>");
    const QStringList lines = results(
        "application.start('" MORVEX_AWKWARD_PROGRAM "'); var w = find('awkward');\n"
        "w.set('styleSheet', 'QPushButton { background: #123456; border: none; }');\n"
        // Once the window has its place, each call lets the application draw what it has to.
        "w.waitFor('isActiveWindow', true);\n"
        "for (let i = 0; i < 10; ++i) { snooze(0.05); w.get('x'); }\n"
        "var options = {screenshotOnFail: true, screenshotOnError: true};\n"
        "var button = find('exit');\n"
        "log.info(['x', 'y'].map(function (axis) {\n"
        "    return w.get('geometry.' + axis) + button.get(axis) + 3; }));\n"
        "check.point('none', options); application.stop(); snooze(0.5);\n"
        "check.point('none', options);\n");
    ASSERT_EQ(lines.size(), 3) << lines.join('\n').toStdString();
    const QRegularExpression pathOf("\\(Screenshot in \"(.*)\"\\)");
    const QString place = lines[0].section('[', 1).section(']', 0, 0);
    EXPECT_EQ(colourAt(pathOf.match(lines[1]).captured(1), place), QColor(0x12, 0x34, 0x56));
    EXPECT_NE(colourAt(pathOf.match(lines[2]).captured(1), place), QColor(0x12, 0x34, 0x56));
}

TEST_F(DisplayTest, WhatIsClickedOnIsPrintedWithItsProperties)
{
    const auto xdotool = [this](const QStringList &arguments) {
        QProcess::execute("env", QStringList{"DISPLAY=" + display->name(), "xdotool"} + arguments);
    };
    const std::tuple<QString, const char *, const char *, const char *, const char *> rows[] = {
        {"inventory", "^Inventory$", "150 80", "{name='articles' type='QTableWidget'}\n  ",
         "\n  rowCount: 3\n"},
        {MORVEX_QUICK_PROGRAM, "^Items$", "200 40", "{name='whole' ", "\n  color: #ffff0000\n"},
    };
    for (const auto &[program, window, place, name, property] : rows) {
        QProcess process;
        process.setProcessEnvironment(runner.environment);
        process.start(RunnerProcess::program(), {"--inspect", "--pick", program});
        QByteArray printed;
        for (int tries = 0; printed.isEmpty() && tries < 100; ++tries) {
            xdotool(QStringList{"search", "--onlyvisible", "--name", window, "mousemove",
                                "--window", "%1"} +
                    QString(place).split(' ') + QStringList{"click", "1"});
            process.waitForReadyRead(300);
            printed = process.readAllStandardOutput();
        }
        while (!printed.contains(property) && process.waitForReadyRead(10000))
            printed += process.readAllStandardOutput();
        EXPECT_TRUE(printed.startsWith(name)) << printed.constData();
        EXPECT_TRUE(printed.contains(property)) << printed.constData();
        xdotool({"search", "--onlyvisible", "--name", window, "windowkill"});
        ASSERT_TRUE(process.waitForFinished(30000));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
    }
}
