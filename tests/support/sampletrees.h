#pragma once

#include "shared/uiabstraction/uielement.h"

#include <QRandomGenerator>

#include <memory>

namespace MorvexTest {

/// A tree of up to @p levels levels whose fields are anything that applications send: flags, texts
/// in every script and of no characters that XML has, far coordinates, pictures, usage.
std::unique_ptr<Morvex::UIAbstraction::UIElement> randomTree(QRandomGenerator &random, int levels);

/// An element of this class, owned by @p parent or else by the caller.
Morvex::UIAbstraction::UIElement *newElement(const char *className,
                                             Morvex::UIAbstraction::UIElement *parent = nullptr);

/// The file of these elements, with or without what is transparent.
QByteArray xmlOf(const QList<Morvex::UIAbstraction::UIElement *> &elements,
                 bool hidesTransparent = true);

} // namespace MorvexTest
