// The kernels with AVX2. Compiled for it; see Lanes.h for what must not stand here.
#include "engine/lanes/KernelSet.h"

namespace LS::Lanes {

constinit const ToneKernels AVX2_KERNELS = KernelSet<Avx2>::Table();

} // namespace LS::Lanes
