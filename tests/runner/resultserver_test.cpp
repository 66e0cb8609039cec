// Runs of the real runner that are uploaded to the result server of the examples.

#include "support/reportcounts.h"
#include "support/runnerprocess.h"
#include "support/test.h"
#include "support/uploadserver.h"

#include <QDeadlineTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QThread>

#include <csignal>

using namespace MorvexTest;

namespace {

class ResultServerTest : public testing::Test
{
protected:
    void startServer(const QStringList &options = {})
    {
        server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        server.start(MORVEX_BINARY_DIR "/examples/bin/resultserver",
                     QStringList{"--port", "0", "--data", path("results")} + options);
        while (!value().isEmpty() || server.waitForReadyRead(30000)) {
            said += server.readAllStandardOutput();
            if (!value().isEmpty())
                break;
        }
        ASSERT_NE(value(), "");
    }

    ~ResultServerTest() override
    {
        server.terminate();
        server.waitForFinished();
        EXPECT_EQ(server.exitCode(), 0);
        EXPECT_EQ(QDir(path("results/.incoming")).entryList({"run-*"}), QStringList());
    }

    QString path(const QString &name) const { return m_dir.filePath(name); }

    // Of --reportgen, as the server shows it.
    QString value() const
    {
        static const QRegularExpression shown("'(quillbase,[^']*)'");
        return shown.match(said).captured(1);
    }

    // The runs of a web report, without what depends on the place of the report.
    static QJsonArray runsOf(const QString &report)
    {
        static const QRegularExpression places("\"x-results:[^\"]*\"");
        QJsonArray runs;
        const QString data = readFile(report + "/data/results-v1.js");
        for (QString &line : data.split('\n').filter("data.push( ")) {
            const QString run = line.replace(places, "\"x-results\"");
            const QByteArray document = run.mid(11, run.lastIndexOf(" );") - 11).toUtf8();
            runs.append(QJsonDocument::fromJson(document).object());
        }
        return runs;
    }

    static void start(QProcess &process, const RunnerProcess &runner, const QStringList &values)
    {
        QStringList arguments;
        for (const QString &value : values)
            arguments << "--reportgen" << value;
        process.setProcessEnvironment(runner.environment);
        process.start(RunnerProcess::program(), arguments << runner.suitePath());
    }

    // Each entry is on standard error when it is sent.
    static void waitForEntry(QProcess &process, const QByteArray &type)
    {
        QByteArray trace;
        process.setReadChannel(QProcess::StandardError);
        while (!trace.contains("\t" + type) && process.waitForReadyRead(60000))
            trace += process.readAll();
    }

    QProcess server;
    QString said;
    RunnerProcess runner;

private:
    QTemporaryDir m_dir;
};

TEST_F(ResultServerTest, TwoHundredTestCasesGiveTheReportThatTheyGiveLocally)
{
    for (int i = 0; i < 200; ++i) {
        const QByteArray number = QByteArray::number(1000 + i);
        runner.addTestCase(
            "tst_" + number,
            "section('s " + number +
                "', function () {\n"
                "  check.equal('\\u4e2d|\\n\\u05e9', '" +
                number +
                "', 'm');\n"
                "  check.that(" +
                (i % 3 ? "true" : "false") + ", 'odd', {expectFail: " + (i % 5 ? "false" : "true") +
                "});\n"
                "});\n"
                "log.warning('w', new Array(" +
                number + ").join('x'));\n" + (i % 50 ? "" : "throw new Error('thrown');\n"));
    }
    runner.addTestCase("tst_attach", "file.write('a.txt', 'content'); attach('a.txt', 'A file');");
    startServer();
    const RunnerOutput output =
        runner.runSuite({"--retry", "1", "--reportgen", "stdout," + path("console.txt"),
                         "--reportgen", value() + "&batch=b", "--reportgen",
                         "html," + path("local"), "--reportgen", "junit," + path("junit.xml")});
    EXPECT_EQ(output.status, 1);
    const QString token = value().section("token=", 1);
    EXPECT_FALSE((output.standardOutput + output.standardError).contains(token.toUtf8()));

    const QString uploaded = path("results/demo/batches/b");
    const QJsonArray local = runsOf(path("local"));
    ASSERT_EQ(local.size(), 1);
    EXPECT_EQ(QJsonDocument(local).toJson(), QJsonDocument(runsOf(uploaded)).toJson());
    const QStringList files =
        QDir(uploaded + "/attachments").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    ASSERT_EQ(files.size(), 1);
    EXPECT_EQ(readFile(uploaded + "/attachments/" + files.front() + "/1-a.txt"), "content");

    Counts console = countsOfConsole(readFile(path("console.txt")));
    EXPECT_EQ(
        console["testcases"],
        runsOf(uploaded)[0].toObject()["tests"].toArray()[0].toObject()["tests"].toArray().size());
    std::vector<Counts> others{countsOfWebReport(readFile(path("local/data/results-v1.js"))),
                               countsOfWebReport(readFile(uploaded + "/data/results-v1.js"))};
    const XmlDocument junit(readFile(path("junit.xml")));
    for (const ClassicFormat &format : classicFormats()) {
        if (format.keyword == "junit")
            others.push_back(format.read(junit));
    }
    EXPECT_EQ(others.size(), 3U);
    for (const Counts &counts : others) {
        EXPECT_FALSE(counts.empty());
        for (const auto &[key, count] : counts)
            EXPECT_EQ(count, console[key]) << key;
    }
}

// What comes over the line is a client's own affair; the server and the other runs go on.
TEST_F(ResultServerTest, HostileBytesAreRefusedAndACutOffRunIsKept)
{
    const QByteArray client =
        "import asyncio, json, sys, websockets\n"
        "token = sys.argv[2]\n"
        "def text(t): return '%d|%s' % (len(t), t)\n"
        "def session(p='p', t=token, b='b'): return '5|0|%s|%s|0|%s\\n' % (text(p), text(t), "
        "text(b))\n"
        "entry = '105|%d|0|' + text('START') + '|1|s|' + text('file:///s') + '|-1' + '|0|' * 4 +"
        " '|0' + '|0|' * 2 + '|-1' + '|0|' * 2 + '|-1\\n'\n"
        "point = '105|2|0|' + '|'.join([text('FAIL'), text(''), text(''), '-1', text(''), "
        "text(''), text(\"in 'f'\"), text(''), '0', text('visualVerificationResult'), "
        "text('file:///dev/stdin'), '-1', text('f'), text(''), '-1\\n'])\n"
        "async def refused(*messages):\n"
        "    async with websockets.connect(sys.argv[1]) as socket:\n"
        "        for m in messages: await socket.send(m.encode('latin1'))\n"
        "        codes = []\n"
        "        try:\n"
        "            for m in messages: codes.append(json.loads(await socket.recv())['code'])\n"
        "        except websockets.ConnectionClosed: codes.append(-1)\n"
        "        return codes\n"
        "async def announced(header):\n"
        "    place = sys.argv[1].split('/')[2].split(':')\n"
        "    reader, writer = await asyncio.open_connection(*place)\n"
        "    writer.write(b'GET /event HTTP/1.1\\r\\nHost: h\\r\\nUpgrade: websocket\\r\\n'\n"
        "        b'Connection: Upgrade\\r\\nSec-WebSocket-Version: 13\\r\\n'\n"
        "        b'Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\\r\\n\\r\\n')\n"
        "    await reader.readuntil(b'\\r\\n\\r\\n')\n"
        "    writer.write(header)\n"
        "    return (await asyncio.wait_for(reader.read(), 60))[:1]\n"
        "async def main():\n"
        "    print(await announced(b'\\x82\\xff\\0\\0\\0\\0\\x7f\\0\\0\\0' + bytes(4)) == "
        "b'\\x88')\n"
        "    bad = ['', '\\0', '|', '105|0', '5|0|', session(t='x'), session(p='..'), "
        "session(p='a/b'),"
        " session(b='.'), session(b='a\\0b'), session(p=''), '5|0|99999999999|x', '5|0|-1|x', "
        "'5|1|', 'x' * 70000,"
        " '5|0|1|p|%s|999999|' % text(token)]\n"
        "    for m in bad: print((await refused(m))[-1] != 0)\n"
        "    for m in ['105|1|', entry % 2, '201|1|1|a|5|abc', '400|1|1|a|5|', '401|1|1|a|-1', "
        "'7|1', '5|1|', '301|1x',"
        " '105|1|0|5|START|0||0||0|0||0||0||0||99999999|']:\n"
        "        print((await refused(session(), m))[-1] != 0)\n"
        "    print(await refused(session(b='cut'), entry % 1, point, '201|3|1|f|1|x'))\n"
        "asyncio.run(main())\n";
    startServer();
    const QString address = value().section('/', 0, 2).replace("quillbase,http", "ws") + "/event";
    QProcess process;
    process.start("/usr/bin/python3", {"-c", client, address, value().section("token=", 1)});
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.readAllStandardOutput(), QByteArray("True\n").repeated(26) + "[0, 0, 0, 0]\n")
        << process.readAllStandardError().constData();
    // The end of the server waits for what is left.
    server.terminate();
    ASSERT_TRUE(server.waitForFinished());
    EXPECT_EQ(runsOf(path("results/p/batches/cut")).size(), 1);
    EXPECT_TRUE(readFile(path("results/p/batches/cut/data/results-v1.js")).contains("Run aborted"));
}

TEST_F(ResultServerTest, RunsAtOnceOverAnEncryptedLineBecomeEachARunOfTheReport)
{
    ASSERT_EQ(QProcess::execute(MORVEX_SOURCE_DIR "/scripts/make-certificate.sh", {path("tls")}),
              0);
    startServer({"--certificate", path("tls/server.crt"), "--key", path("tls/server.key")});
    ASSERT_TRUE(value().contains("https://"));
    RunnerProcess runners[3];
    QProcess processes[3];
    for (int i = 0; i < 3; ++i) {
        for (int test = 0; test <= i; ++test)
            runners[i].addTestCase("tst_" + QString::number(test),
                                   "for (var i = 0; i < 300; ++i) check.that(i % 7, 'm' + i);");
        start(processes[i], runners[i], {value(), "html," + path("local%1").arg(i)});
    }
    QList<QJsonValue> local;
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(processes[i].waitForFinished(120000));
        EXPECT_EQ(processes[i].exitCode(), 1);
        local.append(runsOf(path("local%1").arg(i))[0]);
    }
    const QJsonArray uploaded = runsOf(path("results/demo/report"));
    EXPECT_EQ(uploaded.size(), 3);
    for (const QJsonValue &run : local)
        EXPECT_TRUE(uploaded.contains(run));
}

TEST_F(ResultServerTest, AKilledRunIsKeptAndTheNextOneIsAdded)
{
    startServer();
    QProcess killed;
    runner.addTestCase("tst_a", "check.pass('p'); log.info('i'); for (;;) {}");
    start(killed, runner, {value()});
    waitForEntry(killed, "LOG");
    killed.kill();
    ASSERT_TRUE(killed.waitForFinished());
    runner.addTestCase("tst_a", "check.pass('p');");
    EXPECT_EQ(runner.runSuite({"--reportgen", value()}).status, 0);
    server.terminate();
    ASSERT_TRUE(server.waitForFinished());
    const QString report = path("results/demo/report");
    ASSERT_EQ(runsOf(report).size(), 2);
    EXPECT_EQ(readFile(report + "/data/results-v1.js").count("Run aborted"), 1);
}

// The server never answers the end of the test case; meanwhile the run is interrupted.
TEST_F(ResultServerTest, WhatHappensWhileTheServerIsSilentComesAfterItInAllReports)
{
    const UploadServer silent("forgetful");
    runner.addTestCase("tst_a", "");
    runner.addTestCase("tst_b", "");
    QProcess process;
    start(process, runner, {silent.value(), "html," + path("local"), "stdout"});
    waitForEntry(process, "END_TEST_CASE");
    // A child that has not ended yet would be what is interrupted.
    const QString children = QString("/proc/%1/task/%1/children").arg(process.processId());
    for (const QDeadlineTimer limit(12000);
         !readFile(children).trimmed().isEmpty() && !limit.hasExpired();)
        QThread::msleep(10);
    ::kill(static_cast<pid_t>(process.processId()), SIGINT);
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 130);
    const QByteArray output = process.readAllStandardOutput();
    QStringList shown;
    for (const ConsoleLine &line : RunnerProcess::report({130, output, {}}))
        shown += line.type;
    QStringList uploaded;
    for (const QJsonArray &fields : silent.messages()) {
        if (fields.at(0) == 105)
            uploaded += fields.at(3).toString();
    }
    EXPECT_EQ(shown, (QStringList{"START", "START_TEST_CASE", "END_TEST_CASE", "START_TEST_CASE",
                                  "FATAL", "END_TEST_CASE", "END"}));
    EXPECT_EQ(uploaded, shown);
    Counts console = countsOfConsole(output);
    for (const auto &[key, count] : countsOfWebReport(readFile(path("local/data/results-v1.js"))))
        EXPECT_EQ(count, console[key]) << key;
}

} // namespace
