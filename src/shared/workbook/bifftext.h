#pragma once

#include <QString>
#include <QTextDecoder>
#include <QVector>

#include <memory>
#include <string_view>
#include <vector>

class QTextCodec;

namespace Morvex {

/// A text of an .xls workbook that comes in a record and those that continue it. With a codec it
/// has bytes of the code page, of which a piece may cut a character. Without one each piece begins
/// with a flag for units of 16 bits or their lower halves.
class BiffText
{
public:
    BiffText() = default;
    /// @p length counts bytes or units.
    BiffText(QTextCodec *codec, int length, std::string_view piece);

    /// What is longer than the text is ignored.
    void append(std::string_view piece);
    const QString &text() const { return m_text; }

private:
    std::unique_ptr<QTextDecoder> m_decoder;
    bool m_mayBeLatin = false;
    QString m_text;
    int m_left = 0;
};

/// Null for a code page that is not known.
QTextCodec *codecOfCodePage(quint16 codePage);

/// The texts of the record of shared strings and those that continue it, up to the first one that
/// is cut.
QVector<QString> readBiffSharedStrings(const std::vector<std::string_view> &pieces);

} // namespace Morvex
