// Functions that are worth having a second time for processors with vectors of 256 bits.
#pragma once

/// Before the definition of a function: compiled twice, and the loader takes the one that fits the processor.
/// Once only where compiler or loader cannot; Clang's way gives such a function a name of its own in every
/// file.
#if defined(__x86_64__) && defined(__GLIBC__) && !defined(__clang__)
#define WITH_WIDE_VECTORS __attribute__((target_clones("avx2", "default")))
#else
#define WITH_WIDE_VECTORS
#endif
