#pragma once

namespace Morvex {

/// Makes sure that the clipboard has data, if only without any format. Offscreen it has none at
/// first, which programs that only ever ran on a display don't expect.
void fillEmptyClipboard();

} // namespace Morvex
