#pragma once

#include <chrono>
#include <span>

#include <poll.h>

namespace ravlin {

/// Sleeps until one of `waited` has become what it is waited for, or failed. False at the deadline: a time that has
/// passed means not to wait, `time_point::max()` to wait for ever.
bool isAnyReady(std::span<pollfd> waited, std::chrono::steady_clock::time_point deadline);

/// The same for one descriptor; `events` as for poll(2).
bool isReady(int descriptor, short events, std::chrono::steady_clock::time_point deadline);

/// Lets a write to somebody who has gone away fail: the default is a signal that ends the program. A handler that the
/// program has set is left alone.
void surviveBrokenPipes();

}  // namespace ravlin
