// The messages of an upload, as a server decodes them that knows only the protocol.

#include "support/runs.h"
#include "support/test.h"
#include "support/uploadserver.h"
#include "test/quillbasereportgenerator.h"
#include "test/upload/uploadaddress.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>
#include <map>
#include <sys/stat.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

// The places of an entry's fields in its message; those after the stack count from the end.
enum Field { Type = 3, Script = 5, Message = 8, StackSize = 11 };
enum LastField {
    Kind = 6,
    Location = 5,
    LocationLine = 4,
    Resource = 3,
    Screenshot = 2,
    Retry = 1
};

QJsonValue last(const QJsonArray &fields, LastField field)
{
    return fields.at(fields.size() - field);
}

// What a server gets of entries of a suite in "/suite", from the message after its start up to the
// end of the upload.
std::vector<QJsonArray> uploaded(const std::vector<TestResult::Entry> &entries)
{
    const UploadServer server;
    const auto created =
        QuillbaseReportGenerator::create(server.address(), TestReportGenerator::TEST_SUITE);
    EXPECT_EQ(created.error, "");
    std::unique_ptr<TestReportGenerator> generator(created.generator);
    TestResult::Entry start = entryOf(TestResult::START, "");
    start.line = LineInfo("/suite", -1);
    generator->handleEntry(start);
    replay(entries, generator.get());
    generator.reset();
    std::vector<QJsonArray> messages = server.messages();
    messages.erase(messages.begin(), messages.begin() + 3);
    EXPECT_EQ(messages.back().at(0), 301);
    messages.pop_back();
    return messages;
}

QString sha256(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex();
}

std::string textOf(const QJsonArray &fields)
{
    return QJsonDocument(fields).toJson(QJsonDocument::Compact).toStdString();
}

TEST(UploadMessageTest, EachTypeOfEntryHasItsFieldsInOrder)
{
    const QString script = "x-testsuite:/tst_a/script.js";
    const QJsonArray stack{2, script, 12, "x-testsuite:/shared.js", 0};
    const QJsonArray result{"tableVerificationResult", "x-testsuite:/tst_a/points/VP1.xml", -1};
    const char *const table = "^tablediff\\d+/tablediff\\.xml$";
    const char *const video = "^shot 1_\\d+\\.png$";
    struct Row
    {
        QString script;
        QJsonArray stack, kind;
        const char *resource;
    };
    const Row frame{script, {0}, result, table};
    const Row message{"", stack, result, table};
    const Row verification{script, stack, result, table};
    const Row capture{script, {0}, {"", "", -1}, video};
    std::map<TestResult::ResultType, Row> rows{
        {TestResult::ATTACHMENT,
         {script, {0}, {"screenshot", "", -1}, "^x-results:/.*/results/shot%201\\.png$"}},
        {TestResult::STARTVIDEOCAPTURE, capture},
        {TestResult::ENDVIDEOCAPTURE, capture},
    };
    for (const auto type :
         {TestResult::START_TEST_CASE, TestResult::END_TEST_CASE, TestResult::START_SECTION,
          TestResult::END_SECTION, TestResult::SKIP_SECTION})
        rows.emplace(type, frame);
    for (const auto type :
         {TestResult::LOG, TestResult::FATAL, TestResult::ERROR, TestResult::WARNING})
        rows.emplace(type, message);
    for (const auto type :
         {TestResult::PASS, TestResult::FAIL, TestResult::XFAIL, TestResult::XPASS})
        rows.emplace(type, verification);
    std::vector<TestResult::Entry> entries;
    for (const auto &[type, row] : rows)
        entries.push_back(fullEntry(type));
    // The start and the end of the run.
    EXPECT_EQ(entries.size(), allTypes().size() - 2);
    std::vector<QJsonArray> messages = uploaded(entries);
    const auto isFile = [](const QJsonArray &fields) { return fields.at(0) != 105; };
    messages.erase(std::remove_if(messages.begin(), messages.end(), isFile), messages.end());
    ASSERT_EQ(messages.size(), entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const TestResult::Entry &entry = entries[i];
        const Row &row = rows.at(entry.type);
        QJsonArray expected{105,
                            messages[i].at(1),
                            entry.time.toMSecsSinceEpoch(),
                            TestResult::resultToString(entry.type),
                            "suite_name",
                            row.script,
                            12,
                            "summary",
                            entry.message,
                            entry.details,
                            "info"};
        for (const QJsonArray &part :
             {row.stack, row.kind, QJsonArray{last(messages[i], Resource), "", 2}}) {
            for (const QJsonValue &value : part)
                expected.append(value);
        }
        EXPECT_EQ(textOf(messages[i]), textOf(expected));
        EXPECT_TRUE(QRegularExpression(row.resource)
                        .match(last(messages[i], Resource).toString())
                        .hasMatch());
    }
}

TEST(UploadMessageTest, TheKindOfAVerificationDecidesWhereItIsAndWhatIsAttached)
{
    const QString point = "x-testsuite:/tst_a/points/VP1.xml";
    const std::vector<std::tuple<int, QString, QString, int, QString>> rows{
        {0, "scriptedVerificationResult", "x-testsuite:/tst_a/script.js", 12, ""},
        {1, "propertyVerificationResult", point, -1, ""},
        {2, "tableVerificationResult", point, -1, ""},
        {3, "screenshotVerificationResult", point, -1, "failed/a.png"},
        {4, "visualVerificationResult", point, -1, "failed/a.png"},
        {9, "", "", -1, ""},
    };
    std::vector<TestResult::Entry> entries;
    for (const auto &row : rows) {
        TestResult::Entry entry = fullEntry(TestResult::FAIL);
        entry.vpType = static_cast<TestResult::VPType>(std::get<0>(row));
        entry.tableDiff.clear();
        entry.details = "Saved as '/failed/a.png'. Screenshot in \"/shots/b.png\"";
        entries.push_back(entry);
    }
    const std::vector<QJsonArray> messages = uploaded(entries);
    ASSERT_EQ(messages.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto &[vpType, kind, location, line, resource] = rows[i];
        EXPECT_EQ(last(messages[i], Kind), kind);
        EXPECT_EQ(last(messages[i], Location), location);
        EXPECT_EQ(last(messages[i], LocationLine), line);
        EXPECT_TRUE(last(messages[i], Resource).toString().endsWith(resource));
        EXPECT_EQ(last(messages[i], Resource).toString().isEmpty(), resource.isEmpty()) << vpType;
        EXPECT_TRUE(last(messages[i], Screenshot).toString().endsWith("/shots/b.png"));
    }
}

TEST(UploadMessageTest, StacksAndTextsOfAnySize)
{
    std::vector<TestResult::Entry> entries;
    for (const int frames : {0, 1, 2, 200}) {
        TestResult::Entry entry = fullEntry(TestResult::FAIL);
        entry.stack.assign(frames, LineInfo("/elsewhere/a b.js", 7));
        entries.push_back(entry);
    }
    for (const QString &text :
         {QString(), QString(1, 'x'), QString(65535, QChar(0x4e2d)), QString(5000000, '|'),
          QString::fromUtf8("0|1|\n\u05e9\u05dc\u0648 \u0939\u093f \U0001F600 e\u0301")}) {
        TestResult::Entry entry = fullEntry(TestResult::LOG);
        entry.message = text;
        entries.push_back(entry);
    }
    for (TestResult::Entry &entry : entries)
        entry.vpType = TestResult::PROPERTY_VP;
    const std::vector<QJsonArray> messages = uploaded(entries);
    ASSERT_EQ(messages.size(), entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const int size = static_cast<int>(entries[i].stack.size());
        const int shown = size < 2 ? 0 : size;
        EXPECT_EQ(messages[i].at(StackSize), shown);
        EXPECT_EQ(messages[i].size(), StackSize + 1 + 2 * shown + Kind);
        EXPECT_TRUE(messages[i].at(Message) == entries[i].message) << i;
        if (entries[i].type == TestResult::FAIL) {
            EXPECT_EQ(messages[i].at(Script), size == 0 ? "" : "file:///elsewhere/a%20b.js");
        }
    }
    EXPECT_EQ(messages[3].at(StackSize + 399), "file:///elsewhere/a%20b.js");
}

TEST(UploadMessageTest, FilesFollowTheirEntryUnderItsName)
{
    const QTemporaryDir dir;
    writeFile(dir.filePath("empty.txt"), "");
    writeFile(dir.filePath("shot.png"), "picture");
    QFile large(dir.filePath("large.bin"));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(200 * 1024 * 1024));
    QFile tooLarge(dir.filePath("toolarge.bin"));
    ASSERT_TRUE(tooLarge.open(QIODevice::WriteOnly) && tooLarge.resize(qint64(1025) << 20));
    ASSERT_EQ(::mkfifo(dir.filePath("pipe").toUtf8(), 0600), 0);

    std::vector<TestResult::Entry> entries;
    for (const char *name : {"gone.txt", "pipe", ".", "toolarge.bin", "empty.txt", "large.bin"}) {
        TestResult::Entry entry = fullEntry(TestResult::ATTACHMENT);
        entry.attachmentUri = dir.filePath(name);
        entry.details = "Screenshot in \"" + dir.filePath("shot.png") + '"';
        entries.push_back(entry);
    }
    entries.push_back(fullEntry(TestResult::FAIL));
    QCryptographicHash zeros(QCryptographicHash::Sha256);
    for (int i = 0; i < 200; ++i)
        zeros.addData(QByteArray(1024 * 1024, '\0'));
    const QByteArray difference =
        "\t\t<row line=\"3\">\n\t\t\t<cell>\n"
        "\t\t\t\t<property name=\"text\">%1</property>\n\t\t\t</cell>\n\t\t\t<cell>\n"
        "\t\t\t\t<property name=\"backgroundColor\">#c8ff8000</property>\n"
        "\t\t\t\t<property name=\"text\">%1</property>\n\t\t\t</cell>\n\t\t</row>\n";
    QByteArray tableDiff =
        "<tablediff>\n\t<deletion>\n" + QByteArray(difference).replace("%1", "old") +
        "\t</deletion>\n\t<insertion>\n" + QByteArray(difference).replace("%1", "new") +
        "\t</insertion>\n</tablediff>\n";
    tableDiff.replace("\t", "    ");

    const std::vector<QJsonArray> messages = uploaded(entries);
    QStringList got;
    QStringList names;
    for (const QJsonArray &fields : messages) {
        const bool isEntry = fields.at(0) == 105;
        if (isEntry)
            names =
                QStringList{last(fields, Resource).toString(), last(fields, Screenshot).toString()};
        const QString name = fields.at(2).toString();
        const QString place = name == names.value(0) ? "resource" : "screenshot";
        EXPECT_TRUE(isEntry || names.contains(name)) << name.toStdString();
        got += isEntry ? last(fields, Resource).toString().section('/', -1)
                       : QString("%1 %2 %3")
                             .arg(place, QString::number(fields.at(3).toInt()),
                                  fields.at(4).toString());
    }
    const QString shot = "screenshot 7 " + sha256("picture");
    EXPECT_EQ(got,
              (QStringList{"gone.txt", shot, "pipe", shot, dir.path().section('/', -1), shot,
                           "toolarge.bin", shot, "empty.txt", "resource 0 " + sha256(""), shot,
                           "large.bin", "resource 209715200 " + QString(zeros.result().toHex()),
                           shot, "tablediff.xml",
                           QString("resource %1 ").arg(tableDiff.size()) + sha256(tableDiff)}));
}

TEST(UploadMessageTest, TheAddressNamesProjectTokenLabelsAndBatch)
{
    // What is connected to and the fields of the session; or what the error holds.
    const std::pair<QString, QString> rows[] = {
        {"h/project/foo?token=t", "ws://h:80 foo|t||"},
        {"h:81/a/b/project/foo?token=t", "ws://h:81/a/b foo|t||"},
        {"https://h/project/foo?token=", "wss://h:443 foo|||"},
        {"http://h:0/project/a%20b%2Bc?label=b&token=%2526%2F%3D&label=a%20%E2%82%AC&batch=x+y",
         "ws://h:80 a b+c|%26/=|b,a \u20ac|x+y"},
        {"wss://h/project/foo?token=t", "ws://h:80 foo|t||"},
        {"https://[::1]:8443/project/project?token=t", "wss://[::1]:8443 project|t||"},
        {"", "invalid URL: ''\n\tFormat: quillbase,<url>/project/<project-name>?token=<token>"},
        {"/project/foo?token=t", "invalid URL: '/project/foo?token=t'"},
        {"http:///project/foo?token=%1", "invalid URL: 'http:///project/foo?token=%1'"},
        {"h/project/foo/?token=t", "invalid URI path (missing project)\n\tFormat: "},
        {"h/projects/foo?token=t", "invalid URI path (missing project)"},
        {"h?token=t", "invalid URI path (missing project)"},
        {"h/project/foo?Token=t", "missing upload token\n\tFormat: "},
    };
    for (const auto &[text, wanted] : rows) {
        QUrl url;
        UploadAddress address;
        QString result = parseUploadUrl(text, &url);
        if (result.isEmpty())
            result = parseUploadTarget(url, &address);
        if (result.isEmpty())
            result = QString("%1 %2|%3|%4|%5")
                         .arg(address.url.toString(), address.project, address.token,
                              address.labels.join(','), address.batch);
        EXPECT_TRUE(result.contains(wanted)) << result.toStdString();
    }
}

TEST(UploadMessageTest, TheSessionComesFirst)
{
    const UploadServer server;
    const QString address = server.address().replace("/project/", "/a/b/project/") +
                            "&label=%C3%A4%7C&label=&label=z&batch=B";
    delete QuillbaseReportGenerator::create(address, TestReportGenerator::TEST_CASE).generator;
    EXPECT_EQ(server.messages(),
              (std::vector<QJsonArray>{
                  {"path", "/a/b/event"},
                  {5, 0, "p", "secret", 3, QString::fromUtf8("\u00e4|"), "", "z", "B"},
                  {301, 1}}));
}

} // namespace
