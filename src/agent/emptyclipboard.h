#pragma once

namespace Morvex {

/// Makes sure that the clipboard has data, be it without any format. Offscreen it has none at
/// first, which programs don't expect that run on a display only.
void fillEmptyClipboard();

} // namespace Morvex
