#pragma once

#include <cstdint>
#include <vector>

namespace ravlin {

enum class ForkSide : std::uint8_t { parent, child, failed };

/// Splits off the child process that goes on serving the clipboard after the program's end. The child leads a session
/// of its own and has nothing of the program but its memory and the descriptors named: standard input and outputs lead
/// nowhere, so that nobody who waits for the end of the program's output waits for the child; signals are back to
/// their defaults, so that the end of the desktop session ends it.
///
/// The child must leave with `_exit`: static destructors may wait for threads that exist in the parent only. The parent
/// must neither use nor shut down what is behind these descriptors any more.
ForkSide forkLingeringChild(std::vector<int> keptDescriptors);

}  // namespace ravlin
