#include "qtbackend/recordeduser.h"

using namespace MorvexTest;

using RecordedTextsTest = RecordedUser;

// A place in the text is the same with any width of the window.
TEST_F(RecordedTextsTest, AClickInATextGoesThereAgainHoweverItsLinesAreBroken)
{
    QString text;
    for (int i = 0; i < 60; ++i)
        text += QString("word\u0301%1 ").arg(i);
    int width = 500;
    record([&](QWidget *made) {
        auto *edit = new QTextEdit(text);
        edit->setObjectName("edit");
        edit->setAlignment(Qt::AlignCenter);
        made->layout()->addWidget(edit);
        made->layout()->addWidget(new QLineEdit);
        made->resize(width, 400);
    });
    auto *edit = child<QTextEdit>("edit");
    QTextCursor cursor = edit->document()->find("30 ");
    const QPoint place = edit->cursorRect(cursor).center();
    for (const QPoint &first : {QPoint(20, 20), place}) {
        QTest::qWait(1);
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                          edit->viewport()->mapTo(window.get(), first));
        QCoreApplication::processEvents();
    }
    press("X");
    const QString expected = edit->toPlainText();
    EXPECT_TRUE(expected.contains("30 X")) << expected.toStdString();
    EXPECT_EQ(script().count("<Ctrl+"), 1) << script().toStdString();
    width = 300;
    replay();
    EXPECT_EQ(replayed->findChild<QTextEdit *>("edit")->toPlainText(), expected)
        << script().toStdString();
}

// Keys jump over parts of some fields, and what is next in a text may be on the left.
TEST_F(RecordedTextsTest, AClickPutsTheCursorThereAgainWhateverTheFieldShows)
{
    const char *hebrew = "\u05d0\u05d1\u05d2 \u05d3\u05d4\u05d5 \u05d6\u05d7\u05d8";
    const struct
    {
        const char *name;
        QString keys;
        std::function<QWidget *()> make;
    } rows[] = {
        {"line", "X", [&] { return new QLineEdit(hebrew); }},
        {"text", "X",
         [&] { return new QPlainTextEdit(QString("%1\nabc def\n%1\nabc").arg(hebrew)); }},
        {"money", "7",
         [] {
             auto *box = new QSpinBox;
             box->setRange(0, 99999999);
             box->setValue(1234);
             box->setPrefix("EUR ");
             box->setSuffix(" net");
             return box;
         }},
        {"mask", "1234",
         [] {
             auto *line = new QLineEdit("5");
             line->setInputMask("+99 (999) 99-99;_");
             return line;
         }},
        {"when", "5 Down",
         [] {
             auto *edit = new QDateTimeEdit(QDateTime({2005, 11, 30}, {23, 59, 59, 999}));
             edit->setDisplayFormat("yyyy-MM-dd, HH:mm:ss (zzz 'ms')");
             return edit;
         }},
    };
    const auto valueOf = [](const QWidget *in, const char *name) {
        const auto *field = in->findChild<QWidget *>(name);
        return field->metaObject()->userProperty().read(field).toString();
    };
    const int parts = 6;
    for (int i = 0; i < static_cast<int>(std::size(rows)) * parts * 2; ++i) {
        const auto &row = rows[i / parts / 2];
        const bool isDouble = i / parts % 2 == 1;
        record([&row](QWidget *made) {
            made->layout()->addWidget(new QPushButton);
            made->layout()->addWidget(row.make());
            made->layout()->itemAt(1)->widget()->setObjectName(row.name);
            made->resize(200, 150);
        });
        auto *field = child<QWidget>(row.name);
        const QPoint place(field->width() * (i % parts) / parts + 4,
                           field->height() * (i % parts) / parts + 4);
        QTest::qWait(1);
        const QPoint inWindow = field->mapTo(window.get(), place);
        if (isDouble)
            QTest::mouseDClick(window->windowHandle(), Qt::LeftButton, {}, inWindow);
        else
            QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {}, inWindow);
        QCoreApplication::processEvents();
        press(row.keys);
        const QString expected = valueOf(window.get(), row.name);
        replay();
        EXPECT_EQ(valueOf(replayed.get(), row.name), expected) << script().toStdString();
    }
}
