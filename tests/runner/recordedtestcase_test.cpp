#include "runner/recordedtestcase.h"
#include "runner/recordingjournal.h"

#include "support/files.h"
#include "support/filesizelimit.h"
#include "support/test.h"

#include <QTemporaryDir>

#include <functional>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

QVariantMap typed(int number, const QString &text, const QString &object = "{name='field'}")
{
    return {{"what", "type"}, {"object", object}, {"number", number},
            {"text", text},   {"context", 1},     {"time", number}};
}

} // namespace

TEST(RecordedTestCaseTest, AFullDiskCostsWhatComesAfterItAlone)
{
    const QTemporaryDir dir;
    {
        RecordingJournal journal(dir.filePath("tst_a"));
        ASSERT_EQ(journal.create("start"), "");
        ASSERT_EQ(journal.add(typed(1, "kept")), "");
        const qint64 size = readFile(journal.path()).size();
        QString error;
        {
            const FileSizeLimit limit(static_cast<rlim_t>(size + 50));
            error = journal.add(typed(2, QString(100, 'x')));
        }
        EXPECT_NE(error, "");
        EXPECT_EQ(journal.add(typed(3, "later")), error);
    }
    RecordingJournal journal(dir.filePath("tst_a"));
    EXPECT_EQ(journal.load(), "");
    EXPECT_EQ(journal.actions(), QVariantList{typed(1, "kept")});
    EXPECT_TRUE(readFile(journal.path()).endsWith('\n'));
}

TEST(RecordedTestCaseTest, WhatIsNoJournalIsRefusedAndATornOneIsRead)
{
    const QByteArray first = "{\"recording\":1,\"start\":\"s\"}\n";
    const struct
    {
        std::function<void(const QString &)> make;
        const char *error;
        int actions;
    } rows[] = {
        {[&](const QString &path) { writeFile(path, first + "{\"what\":\"type\"}\n{\"wh"); }, "",
         1},
        {[&](const QString &path) { writeFile(path, first + "[]\n7\n{\"a\":1}"); }, "", 1},
        {[](const QString &path) { writeFile(path, ""); }, "", 0},
        {[](const QString &path) { writeFile(path, "{\"recording\":2}\n"); }, "not a recording", 0},
        {[&](const QString &path) {
             writeFile(path, first);
             EXPECT_EQ(::truncate(qPrintable(path), 1ll << 40), 0);
         },
         "not a recording", 0},
        {[](const QString &path) { EXPECT_EQ(::mkfifo(qPrintable(path), 0600), 0); },
         "not a regular", 0},
        {[](const QString &path) { EXPECT_EQ(::mkdir(qPrintable(path), 0700), 0); },
         "not a regular", 0},
    };
    for (const auto &row : rows) {
        const QTemporaryDir dir;
        RecordingJournal journal(dir.filePath("tst_a"));
        row.make(journal.path());
        const QString error = journal.load();
        EXPECT_TRUE(error.contains(row.error) && error.isEmpty() == (*row.error == 0))
            << error.toStdString();
        EXPECT_EQ(journal.actions().size(), row.actions) << row.error;
    }
}

TEST(RecordedTestCaseTest, AnObjectHasOneNameWhenOthersLikeItCome)
{
    const QTemporaryDir dir;
    RecordingJournal journal(dir.filePath("tst_a"));
    ASSERT_EQ(journal.create("start();"), "");
    // The keys of an edit are found by the name that its editor had then.
    QVariantMap edit = typed(2, "k", "{type='View'}");
    edit["what"] = "edit";
    edit["item"] = QVariantList{"n"};
    edit["editor"] = "{type='Edit'}";
    edit["since"] = 1;
    ASSERT_EQ(journal.add(typed(1, "k", "{type='Edit'}")), "");
    ASSERT_EQ(journal.add(edit), "");
    int number = 2;
    for (const char *name : {"{type='Edit'}", "{type='Box'}", "{type='Edit' visible='true'}",
                             "{type='Box' visible='true'}"})
        ASSERT_EQ(journal.add(typed(++number, "x", name)), "");
    // Scripts use this one.
    writeFile(dir.filePath("names.js"),
              "names.box = {type: \"Box\"};\n// MORVEX_INSERT_OBJECT_NAMES_HERE\n");
    ASSERT_EQ(RecordedTestCase(dir.path(), "tst_a", EventRecorder::OBJECT_SYNC).write(journal), "");
    EXPECT_EQ(readFile(dir.filePath("tst_a/script.js")),
              "start();\nfind(names.view).item(\"n\").edit(\"k\");\n"
              "find(names.edit).type(\"x\");\nfind(names.box).type(\"x\");\n"
              "find(names.edit).type(\"x\");\nfind(names.box_2).type(\"x\");\n");
    EXPECT_TRUE(readFile(dir.filePath("names.js"))
                    .contains("names.edit = {type: \"Edit\", visible: \"true\"};"));
}

TEST(RecordedTestCaseTest, NamesOfTwoRecordersThatEndTogetherAreKept)
{
    const QTemporaryDir dir;
    const auto recordOne = [&dir](int recorder) {
        for (int i = 0; i < 10; ++i) {
            const QString name = QString("tst_%1_%2").arg(recorder).arg(i);
            RecordingJournal journal(dir.filePath(name));
            EXPECT_EQ(journal.create(QString()), "");
            EXPECT_EQ(journal.add(typed(1, "x", QString("{name='%1'}").arg(name))), "");
            EXPECT_EQ(RecordedTestCase(dir.path(), name, EventRecorder::OBJECT_SYNC).write(journal),
                      "");
        }
    };
    std::thread other(recordOne, 1);
    recordOne(2);
    other.join();
    EXPECT_EQ(readFile(dir.filePath("names.js")).count("{name: \"tst_"), 20);
}
