#pragma once

#include <chrono>
#include <span>

#include <poll.h>

namespace ravlin {

/// Sleeps until one of `waited` is ready for its events, or has failed. False at the deadline; one that has passed
/// means not to wait, `time_point::max()` means to wait forever.
bool isAnyReady(std::span<pollfd> waited, std::chrono::steady_clock::time_point deadline);

/// The same for one descriptor; `events` as for poll(2).
bool isReady(int descriptor, short events, std::chrono::steady_clock::time_point deadline);

/// Makes a write to a reader that has gone away fail; the default is a signal that ends the program. A handler that the
/// program has set is left alone.
void surviveBrokenPipes();

}  // namespace ravlin
