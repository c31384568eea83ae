// Which of the processor's instruction sets the kernels use, decided at run time.
#include "Util/CpuFeatures.h"

#include <algorithm>
#include <atomic>

#if defined(__x86_64__)
#include <cpuid.h>
#endif

namespace LS::Util {

namespace {

// Atomic, so that a limit may be set while a kernel runs elsewhere.
std::atomic<InstructionSet> g_limit{InstructionSet::Avx2};

InstructionSet Detect()
{
#if defined(__x86_64__)
    __builtin_cpu_init();
    unsigned nA = 0, nB = 0, nFeatures = 0, nD = 0;
    // The compiler's run-time also asks whether the system saves the wide registers. It has a name for F16C
    // too, but not every compiler knows that.
    if (__builtin_cpu_supports("avx2") && __get_cpuid(1, &nA, &nB, &nFeatures, &nD) != 0 &&
        (nFeatures & bit_F16C) != 0)
        return InstructionSet::Avx2;
#endif
    return InstructionSet::Baseline;
}

} // namespace

InstructionSet BestInstructionSet()
{
    static const InstructionSet detected = Detect();
    return std::min(detected, g_limit.load(std::memory_order_relaxed));
}

void LimitInstructionSet(InstructionSet limit)
{
    g_limit.store(limit, std::memory_order_relaxed);
}

} // namespace LS::Util
