#include "shared/files/writefile.h"

#include "support/filesizelimit.h"
#include "support/test.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

QByteArray accessControlListOf(const QString &path)
{
    QByteArray list(1024, '\0');
    const auto size = ::getxattr(QFile::encodeName(path).constData(), "system.posix_acl_access",
                                 list.data(), std::size_t(list.size()));
    return list.left(static_cast<int>(qMax<ssize_t>(size, 0)));
}

struct stat statusOf(const QString &path)
{
    struct stat status = {};
    ::stat(QFile::encodeName(path).constData(), &status);
    return status;
}

// Lets user 12345 read, as far as the file system has such lists.
void setAccessControlList(const QByteArray &path)
{
    const QByteArray list = QByteArray::fromHex("02000000"
                                                "01000600ffffffff"
                                                "0200040039300000"
                                                "04000400ffffffff"
                                                "10000400ffffffff"
                                                "20000400ffffffff");
    ::setxattr(path.constData(), "system.posix_acl_access", list.constData(),
               std::size_t(list.size()), 0);
}

} // namespace

TEST(WriteFileSafelyTest, WhatTheFileWasBesideItsContentStaysAlsoWhenTheDiskIsFull)
{
    const std::tuple<const char *, void (*)(const QByteArray &path), bool> cases[] = {
        {"plain", [](const QByteArray &) {}, true},
        {"mode", [](const QByteArray &path) { ::chmod(path.constData(), 0751); }, true},
        {"access control list", setAccessControlList, true},
        {"owner",
         [](const QByteArray &path) {
             // Only a privileged user can give files away.
             [[maybe_unused]] const int result = ::chown(path.constData(), 12345, 12345);
         },
         ::geteuid() != 0},
        {"hard link",
         [](const QByteArray &path) { ::link(path.constData(), (path + ".hard").constData()); },
         false},
    };
    for (const auto &[what, prepare, isReplaced] : cases) {
        const QTemporaryDir dir;
        const QString path = dir.filePath("file");
        const QString link = dir.filePath("sub/link");
        writeFile(path, "old");
        ASSERT_TRUE(QDir(dir.path()).mkdir("sub"));
        ASSERT_TRUE(QFile::link(path, link));
        prepare(QFile::encodeName(path));
        const struct stat before = statusOf(path);
        const QByteArray list = accessControlListOf(path);
        {
            const FileSizeLimit limit(4096);
            const auto result = writeFileSafely(link, QByteArray(5000, 'x'));
            EXPECT_EQ(result.outcome, FileWriteResult::NotWritten) << what;
            EXPECT_NE(result.error, "") << what;
        }
        EXPECT_EQ(readFile(path), "old") << what;
        EXPECT_EQ(writeFileSafely(link, QByteArray(200000, 'y')).error, "") << what;
        EXPECT_EQ(readFile(path), QByteArray(200000, 'y')) << what;
        const struct stat after = statusOf(path);
        EXPECT_EQ(writeFileSafely(link, "new").error, "") << what;
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const std::string_view content(reinterpret_cast<char *>(file.map(0, 3)), 3);
        EXPECT_EQ(writeFileSafely(path, {"also ", content}).error, "") << what;
        EXPECT_EQ(readFile(path), "also new") << what;
        EXPECT_TRUE(QFileInfo(link).isSymLink()) << what;
        EXPECT_EQ(after.st_ino != before.st_ino, isReplaced) << what;
        EXPECT_EQ(after.st_mode, before.st_mode) << what;
        EXPECT_EQ(after.st_uid, before.st_uid) << what;
        EXPECT_EQ(after.st_nlink, before.st_nlink) << what;
        EXPECT_EQ(accessControlListOf(path), list) << what;
        EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(),
                  int(after.st_nlink))
            << what << ": nothing is left over";
    }
}

TEST(WriteFileSafelyTest, AFileThatWasNotThereIsThereWholeOrNotAtAll)
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("file");
    const QString link = dir.filePath("link");
    ASSERT_TRUE(QFile::link(path, link));
    {
        const FileSizeLimit limit(4096);
        EXPECT_EQ(writeFileSafely(link, QByteArray(5000, 'x')).outcome,
                  FileWriteResult::NotWritten);
    }
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(writeFileSafely(link, "x").error, "");
    EXPECT_EQ(readFile(path), "x");
}

TEST(WriteFileSafelyTest, WhatIsNoRegularFileIsWrittenToOrRefusedAtOnce)
{
    const QTemporaryDir dir;
    const QString pipe = dir.filePath("pipe");
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(writeFileSafely(pipe, "x").outcome, FileWriteResult::NotOpened);
    EXPECT_EQ(writeFileSafely(dir.path(), "x").outcome, FileWriteResult::NotOpened);
    EXPECT_EQ(writeFileSafely("/dev/full", "x").outcome, FileWriteResult::NotWritten);
    EXPECT_EQ(writeFileSafely("/dev/null", "x").outcome, FileWriteResult::Written);
}
