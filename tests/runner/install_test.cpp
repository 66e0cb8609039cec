#include "support/runnerprocess.h"
#include "support/test.h"

#include <QDirIterator>
#include <QProcess>

using namespace MorvexTest;

namespace {

// The output of a command; fails the test when it does not succeed.
QByteArray outputOf(const QString &program, const QStringList &arguments,
                    const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    process.waitForFinished(500000);
    const QByteArray output = process.readAll();
    EXPECT_EQ(process.exitCode(), 0) << program.toStdString() << output.constData();
    return output;
}

// Each installed header has to compile alone. A file of its own includes each one.
QByteArray buildOfEachHeader(const QString &folder)
{
    QByteArray commands = "set(names)\n";
    QDirIterator headers(folder, {"*.h"}, QDir::Files, QDirIterator::Subdirectories);
    while (headers.hasNext())
        commands += "list(APPEND names \"" +
                    QDir(folder).relativeFilePath(headers.next()).toUtf8() + "\")\n";
    return commands +
           "foreach(name IN LISTS names)\n"
           "  string(MAKE_C_IDENTIFIER \"${name}\" id)\n"
           "  file(WRITE \"${CMAKE_BINARY_DIR}/${id}.cpp\" \"#include \\\"${name}\\\"\\n\")\n"
           "  list(APPEND sources \"${CMAKE_BINARY_DIR}/${id}.cpp\")\n"
           "endforeach()\n"
           "add_library(headers OBJECT ${sources})\n"
           "target_compile_options(headers PRIVATE -fsyntax-only)\n"
           "target_link_libraries(headers PRIVATE Morvex::morvex)\n";
}

const char consumerSource[] = "#include \"test/testresult.h\"\n"
                              "#include \"test/nullreportgenerator.h\"\n"
                              "#include <cstdio>\n"
                              "int main() {\n"
                              "  Morvex::TestResult result(new Morvex::NullReportGenerator);\n"
                              "  result.start(\"consumer\", {}, {});\n"
                              "  std::puts(result.isStarted() ? \"works\" : \"broken\");\n"
                              "}\n";

} // namespace

TEST(InstallTest, AnotherProjectBuildsAgainstTheInstalledTreeAndTheRunnerRuns)
{
    if (!QByteArray(MORVEX_SANITIZE).isEmpty())
        GTEST_SKIP() << "The consumer would have to be built with the same sanitizers.";
    QTemporaryDir dir;
    const QString prefix = dir.filePath("installed tree");
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.remove("DESTDIR");
    outputOf("cmake", {"--install", MORVEX_BINARY_DIR, "--prefix", prefix}, environment);

    writeFile(dir.filePath("consumer/main.cpp"), consumerSource);
    writeFile(dir.filePath("consumer/CMakeLists.txt"),
              "cmake_minimum_required(VERSION 3.25)\nproject(Consumer LANGUAGES CXX)\n"
              "set(CMAKE_CXX_STANDARD 17)\nset(CMAKE_POSITION_INDEPENDENT_CODE ON)\n"
              "find_package(Morvex 1 REQUIRED)\nadd_executable(consumer main.cpp)\n"
              "target_link_libraries(consumer PRIVATE Morvex::morvex)\n" +
                  buildOfEachHeader(prefix + "/include/morvex"));
    outputOf("cmake",
             {"-S", dir.filePath("consumer"), "-B", dir.filePath("build"),
              "-DCMAKE_PREFIX_PATH=" + prefix, "-DCMAKE_CXX_COMPILER=" MORVEX_CXX_COMPILER},
             environment);
    outputOf("cmake", {"--build", dir.filePath("build"), "--parallel", "2"}, environment);
    EXPECT_EQ(outputOf(dir.filePath("build/consumer"), {}, environment), "works\n");

    environment.insert("PKG_CONFIG_PATH", prefix + "/lib/pkgconfig");
    const QByteArray flags = outputOf("pkg-config", {"--cflags", "--libs", "morvex"}, environment);
    for (const char *flag : {"/include/morvex", "-lmorvex ", "Qt5Network"})
        EXPECT_TRUE(flags.contains(flag)) << flags.constData();

    RunnerProcess runner;
    runner.addTestCase("tst_a", "check.pass('p');");
    EXPECT_TRUE(outputOf(prefix + "/bin/morvexrunner", {runner.suitePath()}, runner.environment)
                    .contains("Number of Passes:\t   1"));
}
