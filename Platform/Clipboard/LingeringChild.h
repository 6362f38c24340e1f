#pragma once

#include <cstdint>
#include <vector>

namespace ravlin {

enum class ForkSide : std::uint8_t { parent, child, failed };

/// Forks the child process that keeps serving the clipboard after the program's end. The child leads its own session
/// and keeps nothing of the program but its memory and the given descriptors: the standard streams are redirected to
/// /dev/null, so that a program waiting for our output to end does not wait for the child; termination signals are back
/// to their defaults, so that the child ends with the desktop session. It also gives up the rights that serving does
/// not need: to gain privileges, to start other processes, and to write to files.
///
/// The child must exit with `_exit`: static destructors may wait for threads that exist only in the parent. The parent
/// must no longer use or shut down what is behind these descriptors.
ForkSide forkLingeringChild(std::vector<int> keptDescriptors);

}  // namespace ravlin
