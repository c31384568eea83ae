// The choice of kernels.
#include "engine/lanes/Kernels.h"

#include "Util/CpuFeatures.h"

namespace LS::Lanes {

const ToneKernels* Kernels()
{
#ifdef __x86_64__
    switch (Util::BestInstructionSet()) {
    case Util::InstructionSet::Avx2:
        return &AVX2_KERNELS;
    case Util::InstructionSet::Baseline:
        return &SSE2_KERNELS;
    case Util::InstructionSet::Plain:
        break;
    }
#endif
    return nullptr;
}

} // namespace LS::Lanes
