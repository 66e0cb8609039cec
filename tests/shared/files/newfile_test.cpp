#include "shared/files/newfile.h"

#include "support/filesizelimit.h"
#include "support/test.h"

#include <QSet>

#include <algorithm>
#include <thread>

using namespace Morvex;
using namespace MorvexTest;

class NewFileTest : public testing::Test
{
protected:
    QTemporaryDir dir;
    NumberedPath pathOf = [this](int number) { return dir.filePath(QString::number(number)); };
};

TEST_F(NewFileTest, OfAllWhoWriteAtOnceEachHasAFileOfItsOwn)
{
    QFile::link(dir.filePath("none"), pathOf(1));
    std::vector<QStringList> paths(4);
    std::vector<std::thread> writers;
    for (QStringList &own : paths)
        writers.emplace_back([&own, this] {
            for (int i = 0; i < 100; ++i) {
                const NewFile file = writeNewFile(pathOf, QByteArray("x"));
                own += file.error.isEmpty() ? file.path : file.error;
            }
        });
    for (std::thread &writer : writers)
        writer.join();
    QSet<QString> all;
    for (const QStringList &own : paths)
        all.unite(QSet<QString>(own.begin(), own.end()));
    EXPECT_EQ(all.size(), 400);
    EXPECT_TRUE(std::all_of(all.begin(), all.end(),
                            [](const auto &path) { return readFile(path) == "x"; }));
    EXPECT_FALSE(QFile::exists(dir.filePath("none")));
}

TEST_F(NewFileTest, NothingRemainsOfWhatCantBeWritten)
{
    {
        const FileSizeLimit full(100000);
        const NewFile file = writeNewFile(pathOf, QByteArray(200000, 'x'));
        EXPECT_EQ(file.path, pathOf(1));
        EXPECT_EQ(file.error, "File too large");
    }
    EXPECT_TRUE(QDir(dir.path()).isEmpty());
    EXPECT_EQ(writeNewFile([this](int) { return dir.filePath("no/file"); }, QByteArray()).error,
              "No such file or directory");
}
