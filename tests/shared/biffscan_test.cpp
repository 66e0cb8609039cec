#include "shared/biffscan.h"

#include "shared/xlscell.h"

#include <QtEndian>

#include <gtest/gtest.h>

using namespace Morvex;

namespace {

QByteArray word(quint16 value)
{
    QByteArray bytes(2, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray record(quint16 type, const QByteArray &data)
{
    return word(type) + word(static_cast<quint16>(data.size())) + data;
}

// A formula in the first column whose result is no number: kind 0 a text that follows, 3 none.
QByteArray formula(quint16 row, char kind)
{
    return record(0x0006, word(row) + word(0) + word(0) + kind + QByteArray(5, '\0') +
                              word(0xffff) + QByteArray(8, '\0'));
}

QByteArray text(const QByteArray &latin1)
{
    return word(static_cast<quint16>(latin1.size())) + QByteArray(1, '\0') + latin1;
}

} // namespace

TEST(BiffScanTest, ATextBelongsToTheFormulaInFrontOfItAlone)
{
    const QByteArray begin = record(0x0809, word(0x0600) + word(0x0005));
    const int offset = begin.size() + 4 + 4;
    const QByteArray directory = record(0x0085, word(static_cast<quint16>(offset)) + word(0));
    const BiffScan scan(begin + directory + record(0x0809, word(0x0600) + word(0x0010)) +
                        formula(0, 0) + record(0x0207, text("abcd")) + formula(1, 3) +
                        // What continues a drawing is no text of a cell.
                        record(0x01b6, QByteArray(18, '\0')) + record(0x003c, text("note")) +
                        record(0x000a, QByteArray()));
    ASSERT_EQ(scan.sheetCount(), 1);
    const auto cells = scan.cells(0);
    EXPECT_EQ(cells.value(BiffScan::place(0, 0)).text, "abcd");
    EXPECT_TRUE(cells.contains(BiffScan::place(1, 0)));
    EXPECT_EQ(cells.value(BiffScan::place(1, 0)).text, "");
}
