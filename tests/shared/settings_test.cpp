#include "shared/settings.h"

#include "shared/environment.h"
#include "support/filesizelimit.h"
#include "support/test.h"

using namespace Morvex;
using namespace MorvexTest;

namespace {

class SettingsFileTest : public testing::Test
{
protected:
    // A store of one group "g" with these lines.
    std::unique_ptr<Settings> storeOf(const QByteArray &lines)
    {
        writeFile(path, "[g]\n" + lines);
        return std::make_unique<Settings>(path);
    }

    QTemporaryDir dir;
    const QString path = dir.filePath("deep/er/test.ini");
};

class ExpandingSettings : public Settings
{
public:
    explicit ExpandingSettings(const QString &fileName)
        : Settings(fileName)
    {
        setExpandsEnvironmentVariables(true);
    }
};

} // namespace

TEST_F(SettingsFileTest, HowARawValueReads)
{
    const std::tuple<const char *, const char *, int, int, const char *> rows[] = {
        {" \"a b\" ", "a b", -1, -1, ""},
        {"1", "default", 1, 1, "Morvex::Settings: entry is not a string in "},
        {"\"1\"", "1", -1, 1, ""},
        {" 0 ", "default", 0, 0, "entry is not a string"},
        {"yes", "default", -1, -1, "entry is not a string"},
        {" True", "default", -1, 1, "entry is not a string"},
        {"\"false\"", "false", -1, 0, ""},
        {"\"a", "default", -1, -1, "Morvex::Settings: string not delimited by quotes in "},
        {"\"a\\", "default", -1, -1, "string not delimited by quotes"},
        {"\"a\", \"b\"", "default", -1, -1, "entry is not a string"},
        {"", "default", -1, -1, "entry is not a string"},
        {"x \"a\\n\\r\\t\\\"\\\\b\" y", "a\n\r\t\"\\b", -1, -1, ""},
        {"\"\\x\"", "default", -1, -1, "Morvex::Settings: unknown quoted character 'x' (0x78) in "},
        {"\"\\\xe2\x82\xac\"", "default", -1, -1,
         "Morvex::Settings: unknown quoted character with hex code 0x20ac in "},
    };
    for (const auto &[raw, text, number, boolean, said] : rows) {
        const auto store = storeOf("key =" + QByteArray(raw) + "\n");
        QString read;
        const std::string warning =
            standardErrorOf([&] { read = store->readEntry("g", "key", "default"); });
        EXPECT_EQ(read, text) << raw;
        EXPECT_NE(warning.find(said), std::string::npos) << raw << warning;
        EXPECT_EQ(warning.empty(), *said == 0) << raw << warning;
        EXPECT_EQ(store->readNumEntry("g", "key", -1), number) << raw;
        for (const bool fallback : {false, true})
            EXPECT_EQ(store->readBoolEntry("g", "key", fallback),
                      boolean < 0 ? fallback : boolean == 1)
                << raw;
    }
}

TEST_F(SettingsFileTest, MissingEntriesGiveTheDefaultWithoutAWarning)
{
    const auto store = storeOf("key = \"x\"\n");
    EXPECT_EQ(standardErrorOf([&] {
                  for (const char *group : {"g", "none"}) {
                      EXPECT_EQ(store->readEntry(group, "no", "default"), "default");
                      EXPECT_EQ(store->readListEntry(group, "no", {"d"}), QStringList("d"));
                      EXPECT_EQ(store->readNumEntry(group, "no", 7), 7);
                      EXPECT_EQ(store->readDoubleEntry(group, "no", 0.5), 0.5);
                      EXPECT_TRUE(store->readBoolEntry(group, "no", true));
                  }
              }),
              "");
}

TEST_F(SettingsFileTest, LinesThatAreNoEntriesAreReportedAndSkipped)
{
    writeFile(path, "\xef\xbb\xbf  # comment\r\nlost = 1\r\n[ g x]\r\nA = 1\r\nbroken\r\n\r\n"
                    "  k ey  =  2 = 3 \r\n[open\r\nB=4\r\n[g x]]\n[ g x]\nC = 5");
    std::unique_ptr<Settings> store;
    const std::string warnings = standardErrorOf([&] { store = std::make_unique<Settings>(path); });
    const std::string file = path.toStdString();
    EXPECT_EQ(warnings, "Morvex::Settings::parse: in file " + file +
                            ": line `lost = 1' not in a group\n"
                            "Morvex::Settings::parse: in file " +
                            file + ": corrupted line `broken' in group ` g x'\n");
    EXPECT_EQ(store->groupList(), (QStringList{" g x", "g x]", "open"}));
    EXPECT_EQ(store->entryList(" g x", ""), QStringList("C")) << "a later group replaces";
    EXPECT_EQ(store->readNumEntry("open", "B", 0), 4);
    QString raw;
    EXPECT_TRUE(storeOf("  k ey  =  2 = 3 \n")->readRawEntry("g", "k ey", &raw));
    EXPECT_EQ(raw, "  2 = 3");
}

TEST_F(SettingsFileTest, KeysAreNormalizedAndPathsAreListed)
{
    Settings store(path);
    store.writeRawEntry("g", "/a=b//c/", "1");
    for (const char *key : {"a/b", "a/c/d", "a/c", "a/c-d", "a/c/e/f", "ab/x", "top"})
        store.writeRawEntry("h", key, "1");
    EXPECT_EQ(store.entryList("g", "a_b"), QStringList("c"));
    EXPECT_EQ(store.entryList("h", "a/"), (QStringList{"b", "c", "c-d"}));
    EXPECT_EQ(store.subkeyList("h", "a"), QStringList("c"));
    EXPECT_EQ(store.subkeyList("h", ""), (QStringList{"a", "ab"}));
    EXPECT_EQ(store.entryList("h", ""), QStringList("top"));
    EXPECT_EQ(store.entryList("none", ""), QStringList());
}

TEST_F(SettingsFileTest, WhatIsWrittenIsInTheFile)
{
    {
        Settings store(path);
        store.writeEntry("b", "text", QString("a\"\\\n\r\tb"));
        store.writeEntry("b", "list", QStringList{"x", "", "y,z"});
        store.writeEntry("b", "int", -5);
        store.writeEntry("b", "double", 1234567.0);
        store.writeEntry("b", "yes", true);
        store.writeEntry("a", "x", QStringList());
        EXPECT_FALSE(QFile::exists(path));
    }
    EXPECT_EQ(readFile(path), "[a]\nx = \n\n[b]\ndouble = 1.23457e+06\nint = -5\n"
                              "list = \"x\",\"\",\"y,z\"\ntext = \"a\\\"\\\\\\n\\r\\tb\"\n"
                              "yes = true\n\n");
    EXPECT_EQ(Settings(path).readDoubleEntry("b", "double", 0), 1234570.0);
}

TEST_F(SettingsFileTest, TheFileIsLeftAloneUnlessSomethingWasWritten)
{
    const QByteArray before = "# kept\n[g]\na = 1\n";
    writeFile(path, before);
    Settings(path).removeEntry("g", "a");
    EXPECT_EQ(readFile(path), before);

    Settings store(path);
    store.removeEntry("g", "/a/");
    EXPECT_EQ(standardErrorOf([&] { store.removeEntry("h", "a"); }),
              "Morvex::Settings::removeEntry: group 'h' not found in " + path.toStdString() + "\n");
    EXPECT_TRUE(store.flush());
    EXPECT_EQ(readFile(path), "[g]\n\n") << "the group stays without its last entry";
}

TEST_F(SettingsFileTest, TheLastOneToFlushWins)
{
    const auto store = storeOf("mine = 1\nboth = 1\n");
    writeFile(path, "[g]\nboth = 2\ntheirs = 2\n[h]\n");
    store->writeEntry("g", "both", 3);
    EXPECT_TRUE(store->flush());
    EXPECT_EQ(readFile(path), "[g]\nboth = 3\nmine =  1\n\n");
    writeFile(path, "");
    EXPECT_TRUE(store->flush());
    EXPECT_NE(readFile(path), "") << "once written, each flush writes again";
}

TEST_F(SettingsFileTest, WhatCannotBeReadOrWrittenIsReported)
{
    const std::string place = dir.path().toStdString();
    writeFile(dir.filePath("file"), "");
    ASSERT_TRUE(QDir(dir.path()).mkdir("isdir"));
    const std::tuple<QString, const char *, std::string, std::string> rows[] = {
        {dir.path(), "file/a.ini", "", "flush: could not create directory `" + place + "/file'.\n"},
        {dir.path(), "isdir", "parse: could not open file `" + place + "/isdir' for reading\n",
         "flush: could not open file `" + place + "/isdir' for writing\n"},
        // A place where nobody may create a file.
        {"/proc", "new.ini", "", "flush: could not open file `/proc/new.ini' for writing\n"},
    };
    for (const auto &[in, name, readWarning, writeWarning] : rows) {
        const auto message = [](const std::string &text) {
            return text.empty() ? text : "Morvex::Settings::" + text;
        };
        std::unique_ptr<Settings> store;
        EXPECT_EQ(standardErrorOf(
                      [&, &in = in, name = name] { store = std::make_unique<Settings>(in, name); }),
                  message(readWarning));
        EXPECT_EQ(standardErrorOf([&] { EXPECT_FALSE(store->flush()); }), message(writeWarning));
    }
    const auto store = storeOf("kept = 1\n");
    const QByteArray before = readFile(path);
    store->writeEntry("g", "large", QString(5000, 'x'));
    const FileSizeLimit limit(4096);
    EXPECT_NE(standardErrorOf([&] { EXPECT_FALSE(store->flush()); }), "");
    EXPECT_EQ(readFile(path), before);
}

TEST_F(SettingsFileTest, ALinkThatLeadsNowhereIsReportedAndThenCreatesItsTarget)
{
    const QString link = dir.filePath("link.ini");
    ASSERT_TRUE(QFile::link(dir.filePath("target.ini"), link));
    EXPECT_NE(standardErrorOf([&] { Settings(link).writeEntry("g", "a", 1); }), "");
    EXPECT_EQ(Settings(dir.filePath("target.ini")).readNumEntry("g", "a", 0), 1);
}

TEST_F(SettingsFileTest, ReferencesAreExpandedWhereTheStoreIsSetTo)
{
    const EnvironmentGuard value("MORVEX_TEST_A", "val");
    const EnvironmentGuard nested("MORVEX_TEST_B", "xx$(MORVEX_TEST_A)");
    const EnvironmentGuard endless("MORVEX_TEST_C", "xx$(MORVEX_TEST_C)");
    const std::pair<const char *, const char *> rows[] = {
        {"$(MORVEX_TEST_A)/$(MORVEX_TEST_A)", "val/val"},
        {"$(MORVEX_TEST_B)", "xxval"},
        {"$(MORVEX_TEST_NONE) $(MORVEX_TEST_A)", "$(MORVEX_TEST_NONE) val"},
        {"$$(MORVEX_TEST_A) $$$(MORVEX_TEST_A)", "$(MORVEX_TEST_A) $val"},
        {"$ $x $", "$ $x $"},
        {"$(MORVEX_TEST_A $$", "$(MORVEX_TEST_A $"},
        {"$(MORVEX_TEST_C)", "$(MORVEX_TEST_C)"},
    };
    for (const auto &[text, expanded] : rows) {
        storeOf("")->writeEntry("g", "key", QString(text));
        EXPECT_EQ(ExpandingSettings(path).readEntry("g", "key", ""), expanded);
        EXPECT_EQ(ExpandingSettings(path).readListEntry("g", "key", {}), QStringList(expanded));
        EXPECT_EQ(Settings(path).readEntry("g", "key", ""), text);
    }
}

TEST(SettingsFilesTest, EachKindOfSettingsHasItsFile)
{
    QTemporaryDir dir;
    const EnvironmentGuard home("HOME", dir.path().toLocal8Bit());
    const EnvironmentGuard noUser("MORVEX_USER_SETTINGS_DIR", QByteArray());
    EXPECT_EQ(Settings::morvexSettingsDir(), dir.filePath(".morvex"));
    EXPECT_TRUE(QDir(dir.filePath(".morvex")).exists());
    const QString wanted = dir.filePath("deep/er");
    const EnvironmentGuard user("MORVEX_USER_SETTINGS_DIR", wanted.toLocal8Bit());
    const EnvironmentGuard prefix("MORVEX_PREFIX", dir.path().toLocal8Bit());
    UserSettings(UserSettings::Paths).writeEntry("g", "type", 3);
    EXPECT_EQ(Settings(wanted + "/ver1", "paths.ini").readNumEntry("g", "type", -1), 3);
    writeFile(dir.filePath("etc/morvex.ini"), "[g]\ntype = 4");
    EXPECT_EQ(GlobalSettings(GlobalSettings::Morvex).readNumEntry("g", "type", -1), 4);
    UserSettings(UserSettings::QuillbaseCmd).writeEntry("g", "type", 5);
    EXPECT_TRUE(QFile::exists(wanted + "/ver1/quillbasecmd.ini"));
    EXPECT_EQ(Settings::settingsDir(), wanted);
    EXPECT_EQ(Settings::defaultGroup(), "General");
}
