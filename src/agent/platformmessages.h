#pragma once

namespace Morvex {

/// Keeps the toolkit from printing, in each run, what windows that are drawn into memory can't do:
/// no tester can change that. Other messages go where they went.
void hideMessagesOfPlatform();

} // namespace Morvex
