#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>

namespace Morvex {

/// What a script names an item by: a path of texts, or a row and a column.
struct ItemSelector
{
    QString path;
    bool isCell = false;
    int row = -1;
    /// Of a path the column of the node that it leads to; -1 for that of its text.
    int column = -1;
    /// From 1 on, among entries with the same text; 0 when there may be only one.
    int occurrence = 0;

    /// A text, with a map of the options "column" and "occurrence" or without, or two numbers.
    static ItemSelector of(const QVariantList &values);
    QString describe() const;
};

/// The way along a path: one level after the other.
class ItemPath
{
public:
    explicit ItemPath(const ItemSelector &selector);

    bool isAtEnd() const { return m_rest.isEmpty(); }

    /// The index of the text with which the path goes on, then moves on; negative when there is
    /// none or more than one. Of several that fit the longest is meant, as an entry may have the
    /// separator in its text.
    int next(const QStringList &texts);

    /// Empty while all was found.
    QString error() const { return m_error; }

private:
    QString m_name;
    QString m_rest;
    int m_occurrence;
    QString m_error;
};

/// The index of the text of one level that the selector names, or of which it gives the number;
/// negative, with an error text, without one.
int indexAmong(const ItemSelector &selector, const QStringList &texts, int number, QString *error);

/// The path through these texts, as a selector has it.
QString itemPathOf(const QStringList &texts);

/// ", there are: ..." with the first of the texts; empty without any.
QString listedTexts(const QStringList &texts);

/// A text of a menu or a tab as it is shown: "&" marks a letter, "&&" is one, and a shortcut
/// follows a tabulator.
QString shownText(QString text);

} // namespace Morvex
