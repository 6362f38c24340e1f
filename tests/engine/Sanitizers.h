#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define RAVLIN_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define RAVLIN_ADDRESS_SANITIZER
#endif
#endif

namespace ravlin::tests {

/// Whether this build takes several times as long, and more memory.
#ifdef RAVLIN_ADDRESS_SANITIZER
inline constexpr bool kIsSanitized = true;
#else
inline constexpr bool kIsSanitized = false;
#endif

}  // namespace ravlin::tests
