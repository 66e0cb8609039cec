#pragma once

#include "shared/uiabstraction/uielement.h"

#include <QRandomGenerator>

#include <memory>

namespace MorvexTest {

/// A tree of up to @p levels levels whose fields are anything that applications send: flags, texts
/// in every script and of no characters that XML has, far coordinates, pictures, usage.
std::unique_ptr<Morvex::UIAbstraction::UIElement> randomTree(QRandomGenerator &random, int levels);

/// The stream form of a whole dump.
QByteArray dumpOf(const QList<Morvex::UIAbstraction::UIElement *> &elements);

/// All fields of all elements as one text, "null" for null texts: equal trees have equal texts.
QString described(const Morvex::UIAbstraction::UIElement &element);

} // namespace MorvexTest
