#pragma once

namespace Morvex {

class QtModel;

/// Adds the methods that verification calls: "grabWidget" of the global class, "getRange" of
/// tables, "contentAsXml" of their ranges.
void addModelMethods(QtModel &model);

/// Names of the model's own classes.
extern const char globalClassName[];
extern const char tableClassName[];

} // namespace Morvex
