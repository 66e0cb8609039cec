#pragma once

namespace Morvex {

struct RunnerOptions;

/// Writes the names of the suite's object map into its names file. The object map stays as it is,
/// and what the names file defines already is not added again. Returns an exit status.
int migrateNames(const RunnerOptions &options);

} // namespace Morvex
