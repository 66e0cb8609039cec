#include "shared/temporarydir.h"

#include "support/test.h"

using namespace Morvex;
using namespace MorvexTest;

TEST(TemporaryDirTest, ANameThatIsTakenIsPassedOver)
{
    const QTemporaryDir parent;
    const QString nameTemplate = parent.filePath("t_");
    std::srand(1);
    const TemporaryDir first(nameTemplate);
    std::srand(1);
    const TemporaryDir second(nameTemplate);
    EXPECT_TRUE(second.isValid());
    EXPECT_NE(first.path(), second.path());
    EXPECT_TRUE(QFileInfo(second.path()).isDir());
    EXPECT_TRUE(second.path().startsWith(nameTemplate));
}

TEST(TemporaryDirTest, ErrorsNameTheParent)
{
    const QTemporaryDir parent;
    TemporaryDir missing(parent.filePath("no/t_"));
    EXPECT_FALSE(missing.isValid());
    EXPECT_FALSE(missing.remove());
    EXPECT_EQ(missing.errorString(), QStringLiteral("Cannot create temporary directory, parent "
                                                    "directory \"%1\" does not exist.")
                                         .arg(parent.filePath("no")));
    const TemporaryDir unwritable("/proc/t_");
    EXPECT_EQ(unwritable.errorString(), "Could not create temporary directory below \"/proc\".");
}

TEST(TemporaryDirTest, OnlyAutoRemoveTakesTheDirectoryAway)
{
    const QTemporaryDir parent;
    for (const bool autoRemove : {true, false}) {
        auto dir = std::make_unique<TemporaryDir>(parent.filePath("t_"));
        const QString path = dir->path();
        writeFile(path + "/a/.hidden", "x");
        dir->setAutoRemove(autoRemove);
        dir.reset();
        EXPECT_EQ(QFileInfo::exists(path), !autoRemove);
    }
}

TEST(RemoveDirRecursivelyTest, WhatALinkPointsToStays)
{
    const QTemporaryDir dir;
    writeFile(dir.filePath("kept/file"), "x");
    QDir(dir.path()).mkdir("gone");
    QFile::link(dir.filePath("kept"), dir.filePath("gone/link"));
    QFile::link(dir.filePath("nowhere"), dir.filePath("gone/broken"));
    EXPECT_TRUE(removeDirRecursively(dir.filePath("gone")));
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("gone")));
    EXPECT_EQ(readFile(dir.filePath("kept/file")), "x");
}

TEST(CopyDirectoryTest, ExistingFilesStayOrEndTheCopy)
{
    for (const bool isCopied : {false, true}) {
        const auto option = isCopied ? KeepExistingFile : FailOnExistingFile;
        const QTemporaryDir dir;
        writeFile(dir.filePath("source/a"), "a");
        writeFile(dir.filePath("source/b"), "b");
        writeFile(dir.filePath("source/sub/c"), "c");
        writeFile(dir.filePath("target/b"), "mine");
        QString error;
        EXPECT_EQ(copyDirectory(dir.filePath("source"), dir.filePath("target"), &error, option),
                  isCopied);
        EXPECT_EQ(
            error,
            isCopied
                ? QString()
                : QStringLiteral("Target file '%1' already exists").arg(dir.filePath("target/b")));
        EXPECT_EQ(readFile(dir.filePath("target/a")), "a");
        EXPECT_EQ(readFile(dir.filePath("target/b")), "mine");
        EXPECT_EQ(readFile(dir.filePath("target/sub/c")), isCopied ? "c" : QByteArray());
    }
}

TEST(CopyDirectoryTest, ACopyWithinItsSourceEnds)
{
    const QTemporaryDir dir;
    writeFile(dir.filePath("a/b/c"), "c");
    EXPECT_TRUE(
        copyDirectory(dir.filePath("a"), dir.filePath("a/b/copy"), nullptr, FailOnExistingFile));
    const auto all = QDir::NoDotAndDotDot | QDir::AllEntries;
    EXPECT_EQ(QDir(dir.filePath("a/b/copy")).entryList(all), QStringList("b"));
    EXPECT_EQ(QDir(dir.filePath("a/b/copy/b")).entryList(all), QStringList("c"));
}

TEST(CopyDirectoryTest, EachFailureHasItsText)
{
    const QTemporaryDir dir;
    writeFile(dir.filePath("file"), "x");
    writeFile(dir.filePath("source/a"), "a");
    const std::tuple<const char *, const char *, QString> rows[] = {
        {"no", "t", QStringLiteral("Source directory '%1/no' does not exist")},
        {"file", "no/t", QStringLiteral("Failed to copy '%1/file' into '%1/no/t'")},
        {"source", "no/t", QStringLiteral("Failed to create target directory '%1/no/t'")},
    };
    for (const auto &[source, target, message] : rows) {
        QString error;
        EXPECT_FALSE(
            copyDirectory(dir.filePath(source), dir.filePath(target), &error, KeepExistingFile));
        EXPECT_EQ(error, message.arg(dir.path()));
        EXPECT_FALSE(
            copyDirectory(dir.filePath(source), dir.filePath(target), nullptr, KeepExistingFile));
    }
}
