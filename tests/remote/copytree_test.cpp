#include "remote/copytree.h"

#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace Morvex;
using namespace MorvexTest;

TEST(CopyTreeTest, LinksLeadWhereTheyDidAndOfFilesElsewhereThereAreCopies)
{
    const QTemporaryDir dir;
    const QString seed = dir.filePath("seed/");
    const QString home = dir.filePath("elsewhere/home/");
    writeFile(seed + ".config/file", "text");
    QFile::setPermissions(seed + ".config/file", QFile::ReadOwner);
    writeFile(dir.filePath("other/more"), "more");
    const struct
    {
        const char *name;
        QString target;
        bool isLink;
        const char *file;
    } rows[] = {
        {"inside", ".config", true, "/file"},     {"nowhere", "host:17", true, ":"},
        {"directory", "../other", true, "/more"}, {"absolute", seed + ".config/file", false, ""},
        {"file", "../other/more", false, ""},
    };
    for (const auto &row : rows)
        QFile::link(row.target, seed + row.name);
    ASSERT_EQ(::mkfifo(QFile::encodeName(seed + "pipe").constData(), S_IRWXU), 0);
    QDir().mkpath(home);
    EXPECT_EQ(copyTree(seed, home), "");
    for (const auto &row : rows) {
        EXPECT_EQ(QFileInfo(home + row.name).isSymLink(), row.isLink) << row.name;
        EXPECT_EQ(QFile::exists(home + row.name + row.file), *row.file != ':') << row.name;
    }
    EXPECT_TRUE(QFile::permissions(home + ".config/file") & QFile::WriteOwner);
    EXPECT_FALSE(QFile::exists(home + "pipe"));
    EXPECT_NE(copyTree(seed, dir.filePath("other/more")), "");
}
