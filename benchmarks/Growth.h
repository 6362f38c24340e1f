#pragma once

#include <limits>

#include <malloc.h>

/// For benchmarks that compare a text with one of twice its size.
///
/// glibc gets every block above 32 MiB from the kernel and returns it, and keeps smaller ones. If only the larger
/// text's result were above that, it alone would pay for page faults. So growth is measured with all memory kept.
namespace ravlin::Benchmarks {

inline void keepMemory() {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
}

inline void giveMemoryBack() {
    constexpr int kDefaultMapMax = 65536;
    constexpr int kDefaultTrimThreshold = 128 * 1024;
    mallopt(M_MMAP_MAX, kDefaultMapMax);
    mallopt(M_TRIM_THRESHOLD, kDefaultTrimThreshold);
    malloc_trim(0);
}

}  // namespace ravlin::Benchmarks
