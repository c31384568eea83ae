// How far kernels go in the use of the processor, for tests and benchmarks.
#pragma once

namespace LS::Util {

/// What kernels may use, each with all that those before it have.
enum class InstructionSet {
    Plain,    ///< no kernels at all where a plain twin exists
    Baseline, ///< vectors of 128 bits: SSSE3, or SSE2 if Highway knows it; NEON
    Best      ///< the best of what this processor has and kernels are compiled for: up to AVX2
};

/// Keeps kernels from what is above the limit; Best lifts it. Not to be called while a kernel runs.
void LimitInstructionSet(InstructionSet limit);

bool KernelsAllowed();

/// What kernels use, such as "AVX2".
const char* InstructionSetInUse();

} // namespace LS::Util
