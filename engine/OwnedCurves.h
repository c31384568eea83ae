// Response curves in the form of the engine's interfaces, owned by a caller until a merge takes them.
#pragma once

#include <vector>

/// Deletes the curves that it still holds when it goes.
class OwnedCurves {
public:
    OwnedCurves() = default;
    OwnedCurves(const OwnedCurves&) = delete;
    OwnedCurves& operator=(const OwnedCurves&) = delete;
    ~OwnedCurves()
    {
        for (const float* pCurve : m_vafCurves)
            delete[] pCurve;
    }

    std::vector<float*>& Get() { return m_vafCurves; }

    /// After a successful merge: the workspace owns the curves from now on.
    void Release() { m_vafCurves.clear(); }

private:
    std::vector<float*> m_vafCurves;
};
