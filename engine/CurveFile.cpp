// Curve files: 256 floats of red, then of green, then of blue, and nothing else.
#include "engine/HDRRoutine.h"

#include "Util/FailureLog.h"
#include "Util/RegularFile.h"
#include "engine/HDRWorkspace.h"
#include "engine/ResponseCurve.h"

#include <algorithm>
#include <bit>
#include <exception>
#include <fstream>

// Curve files and cache files are little-endian, and their floats go to and from memory as they are.
static_assert(std::endian::native == std::endian::little);

namespace {

constexpr std::streamsize CURVE_BYTES = CURVE_ENTRIES * sizeof(float);

Curves ZeroCurves()
{
    Curves curves;
    for (Curve& pCurve : curves)
        pCurve = std::make_unique<float[]>(CURVE_ENTRIES);
    return curves;
}

Curves StandardCurves()
{
    Curves curves = ZeroCurves();
    for (Curve& pCurve : curves)
        std::copy(StandardCurve().begin(), StandardCurve().end(), pCurve.get());
    return curves;
}

void DeleteCurves(std::vector<float*>& vafCurves)
{
    for (const float* pCurve : vafCurves)
        delete[] pCurve;
    vafCurves.clear();
}

} // namespace

bool SaveCurves(const char* szPath)
{
    const std::vector<float*>& vafCurves = Workspace().vafCurves;
    if (!szPath || vafCurves.empty())
        return false;
    try {
        std::ofstream file(szPath, std::ios::binary);
        if (!file) {
            LS::Util::LogFailure("save curves", szPath, LS::Util::SystemError());
            return false;
        }
        for (const float* pCurve : vafCurves)
            file.write(reinterpret_cast<const char*>(pCurve), CURVE_BYTES);
        file.close();
        if (!file) // the result stays true: whoever wants to know reads the file back
            LS::Util::LogFailure("save curves", szPath, LS::Util::SystemError());
        return true;
    } catch (const std::exception& e) {
        LS::Util::LogFailure("save curves", szPath, e.what());
        return false;
    }
}

bool LoadCurves(const char* szPath, std::vector<float*>& vafCurves)
{
    if (!szPath) {
        Curves curves = StandardCurves();
        AppendCurves(curves, vafCurves);
        return true;
    }
    try {
        std::string sReason; // a pipe would block
        if (!LS::Util::IsRegularFile(szPath, sReason)) {
            LS::Util::LogFailure("load curves", szPath, sReason);
            return false;
        }
        std::ifstream file(szPath, std::ios::binary);
        if (!file) {
            LS::Util::LogFailure("load curves", szPath, LS::Util::SystemError());
            return false;
        }
        Curves curves = ZeroCurves();
        for (Curve& pCurve : curves)
            file.read(reinterpret_cast<char*>(pCurve.get()), CURVE_BYTES);
        AppendCurves(curves, vafCurves);
        return true;
    } catch (const std::exception& e) {
        LS::Util::LogFailure("load curves", szPath, e.what());
        DeleteCurves(vafCurves);
        return false;
    }
}
