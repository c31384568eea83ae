// How far kernels go in the use of the processor.
#include "Util/CpuFeatures.h"

#include <cstdint>

#include <hwy/highway.h>

namespace LS::Util {

namespace {

bool g_bKernels = true;

} // namespace

void LimitInstructionSet(InstructionSet limit)
{
    g_bKernels = limit != InstructionSet::Plain;
    hwy::DisableTargets(limit == InstructionSet::Best ? 0 : HWY_AVX2);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

bool KernelsAllowed()
{
    return g_bKernels;
}

const char* InstructionSetInUse()
{
    if (!g_bKernels)
        return "plain";
    const auto targets = static_cast<std::int64_t>(hwy::SupportedTargets()) & HWY_TARGETS;
    return hwy::TargetName(targets & -targets); // the better the set, the lower its bit
}

} // namespace LS::Util
