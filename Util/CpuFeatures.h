// Which of the processor's instruction sets the kernels use, decided at run time.
#pragma once

namespace LS::Util {

/// Instruction sets that kernels are written for, each with all that those before it have.
enum class InstructionSet {
    Baseline, ///< what every processor of this platform has: SSE2
    Avx2      ///< AVX2 and F16C; never fused multiply-add, since results keep their bits
};

/// The best set that this processor and its system offer, or the limit if that is lower. Cheap enough for
/// one call per row.
InstructionSet BestInstructionSet();

/// Keeps kernels from sets above this one, for tests and benchmarks; Avx2 lifts the limit. A set that the
/// processor lacks stays out of use.
void LimitInstructionSet(InstructionSet limit);

} // namespace LS::Util
