#include "shared/zipfile.h"

#include "support/test.h"

#include <QBuffer>
#include <QDateTime>

#include <minizip/unzip.h>
#include <sys/stat.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

QByteArray contentOf(const QString &archive, const char *name, unz_file_info *info)
{
    unzFile zip = unzOpen(QFile::encodeName(archive).constData());
    QByteArray content;
    if (zip && unzLocateFile(zip, name, 1) == UNZ_OK) {
        unzGetCurrentFileInfo(zip, info, nullptr, 0, nullptr, 0, nullptr, 0);
        content.resize(static_cast<int>(info->uncompressed_size));
        unzOpenCurrentFile(zip);
        unzReadCurrentFile(zip, content.data(), static_cast<unsigned>(content.size()));
        unzCloseCurrentFile(zip);
    }
    unzClose(zip);
    return content;
}

int entriesOf(const QString &archive)
{
    unzFile zip = unzOpen(QFile::encodeName(archive).constData());
    unz_global_info info{};
    unzGetGlobalInfo(zip, &info);
    unzClose(zip);
    return static_cast<int>(info.number_entry);
}

// Takes no more than a few bytes, as a disk that runs full.
class SmallDevice : public QBuffer
{
public:
    explicit SmallDevice(qint64 capacity)
        : m_capacity(capacity)
    {
    }

protected:
    qint64 writeData(const char *data, qint64 size) override
    {
        return pos() + size > m_capacity ? -1 : QBuffer::writeData(data, size);
    }

private:
    qint64 m_capacity;
};

} // namespace

TEST(ZipFileTest, FilesOfAllDepthsKeepTheirPathContentAndTime)
{
    const QTemporaryDir dir;
    QByteArray large;
    for (int i = 0; i < 100000; ++i)
        large += QByteArray::number(i * 7919LL);
    writeFile(dir.filePath("root/large"), large);
    writeFile(dir.filePath("root/a/b/gr\u00fcn"), "");
    const QDateTime time(QDate(2021, 12, 31), QTime(23, 58, 58));
    QFile file(dir.filePath("root/large"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.setFileTime(time, QFileDevice::FileModificationTime);
    file.close();
    QFile target(dir.filePath("x.zip"));
    {
        ZipFile zip(&target);
        EXPECT_EQ(zip.addDirectoryContents(QDir(dir.filePath("root"))), QString());
        EXPECT_EQ(zip.close(), QString());
    }
    unz_file_info info{};
    EXPECT_EQ(contentOf(target.fileName(), "large", &info), large);
    EXPECT_EQ(info.tmu_date.tm_year, 2021U);
    EXPECT_EQ(info.tmu_date.tm_mon, 11U);
    EXPECT_EQ(info.tmu_date.tm_mday, 31U);
    EXPECT_EQ(info.tmu_date.tm_hour, 23U);
    EXPECT_EQ(info.tmu_date.tm_sec, 58U);
    info.crc = 1;
    EXPECT_EQ(contentOf(target.fileName(), "a/b/gr\u00fcn", &info), QByteArray());
    const uLong nameIsUtf8 = 0x800;
    EXPECT_TRUE(info.flag & nameIsUtf8);
    EXPECT_EQ(info.crc, 0U);
}

TEST(ZipFileTest, WhatIsNoFileNeitherEndsNorLoopsNorBlocksTheWalk)
{
    const QTemporaryDir dir;
    const QString root = dir.filePath("root");
    writeFile(root + "/z/file", "content");
    ASSERT_TRUE(QFile::link(root, root + "/a loop"));
    ASSERT_TRUE(QFile::link(dir.filePath("nothing"), root + "/dangling"));
    ASSERT_TRUE(QFile::link(root + "/z/file", root + "/link"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(root + "/fifo").constData(), 0600), 0);
    QFile target(dir.filePath("x.zip"));
    {
        ZipFile zip(&target);
        EXPECT_EQ(zip.addDirectoryContents(QDir(root)), QString());
        EXPECT_EQ(zip.close(), QString());
    }
    unz_file_info info{};
    EXPECT_EQ(contentOf(target.fileName(), "z/file", &info), "content");
    EXPECT_EQ(contentOf(target.fileName(), "link", &info), "content");
    EXPECT_EQ(entriesOf(target.fileName()), 2);
}

TEST(ZipFileTest, ADeviceThatRunsFullIsReportedWhereverThatHappens)
{
    QByteArray content(100, '\0');
    QBuffer whole;
    whole.open(QIODevice::ReadWrite);
    const auto write = [&content](QIODevice *device) {
        ZipFile zip(device);
        QBuffer source(&content);
        source.open(QIODevice::ReadOnly);
        const QString error = zip.addFile(&source, "name", QDateTime::currentDateTime());
        const QString closeError = zip.close();
        return error + closeError;
    };
    EXPECT_EQ(write(&whole), QString());
    for (qint64 capacity = 0; capacity < whole.data().size(); ++capacity) {
        SmallDevice device(capacity);
        device.open(QIODevice::ReadWrite);
        EXPECT_FALSE(write(&device).isEmpty()) << capacity;
    }
}
