#pragma once

#include "runner/scriptengine.h"

#include <QByteArray>
#include <QJSValue>
#include <QString>

#include <chrono>
#include <vector>

namespace Morvex {

/// What the functions of scriptnames.mjs are reached by. Defines wildcard and regexp in the global
/// scope of @p engine.
QJSValue installNameFunctions(ScriptEngine *engine);

/// The name of the names file in a suite.
QString namesFileName();

/// Where and why a names file can't be used; no text when it can.
struct NamesFileError
{
    QString text;
    /// In the names file; without a line when the fault has none.
    LineInfo place;

    /// The text after the place.
    QString toString() const;
};

/// A names file only says which names there are.
constexpr std::chrono::seconds longestNamesFileRun(10);

/// What is wrong with the bytes of a names file before they are taken for a script: such a file
/// would lose what it holds when names are added to it.
[[nodiscard]] NamesFileError checkNamesFileContent(const QString &path, const QByteArray &content);

/// What a real name of runNamesFile has in place of the text of an object that the file defines
/// under @p key.
QString namesFileReference(const QString &key);
bool isNamesFileReference(const QString &text);

/// Runs the names file in @p engine and defines the global "names". @p functions are those of
/// installNameFunctions. A file that does not exist defines no name. @p lines, which may be null,
/// gets a pair of name and real name for each definition, in the order of the file. After @p limit
/// the file is interrupted, which is an error.
[[nodiscard]] NamesFileError runNamesFile(ScriptEngine *engine, const QJSValue &functions,
                                          const QString &path,
                                          std::vector<std::pair<QString, QString>> *lines,
                                          std::chrono::milliseconds limit = longestNamesFileRun);

} // namespace Morvex
