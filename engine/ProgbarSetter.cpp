// From percent of an operation to positions of the one progress dialog.
#include "engine/ProgbarSetter.h"

#include "Util/Assertion.h"
#include "engine/HDRWorkspace.h"

#include <wx/string.h>

#include <algorithm>

namespace {

constexpr std::int32_t DIALOG_MAXIMUM = 100;

/// The last position that any setter computed. Nested setters of one dialog report the same position again
/// and again; this keeps all but the first away from it.
std::int32_t g_nLastPosition = -1;

} // namespace

ProgbarSetter::ProgbarSetter(ProgressTarget* pDialog, std::int32_t nCurrent, std::int32_t nMin,
                             std::int32_t nMax)
    : m_nMin(nMin), m_nMax(nMax), m_nCurrent(nCurrent), m_pDialog(pDialog)
{
}

ProgbarSetter::ProgbarSetter(const ProgbarSetter* pParent, std::int32_t nLow, std::int32_t nHigh)
    : m_nMin(0), m_nMax(0), m_nCurrent(0), m_pDialog(nullptr)
{
    LS_ASSERT(pParent);
    // The + 1 lets neighbouring slices such as 1..80 and 81..96 start at whole positions.
    const auto fFactor = static_cast<float>((pParent->m_nMax - pParent->m_nMin + 1) / 100.0);
    const auto position = [&](std::int32_t nPercent) {
        return static_cast<std::int32_t>(static_cast<double>(fFactor) * nPercent + pParent->m_nMin);
    };
    m_nMin = position(nLow);
    m_nMax = position(nHigh);
    m_nCurrent = pParent->m_nCurrent;
    m_pDialog = pParent->m_pDialog;
}

void ProgbarSetter::SetPercent(std::int32_t nPercent)
{
    LS_ASSERT(m_nMin <= m_nMax);
    std::int32_t nPosition = m_nMin - static_cast<std::int32_t>((m_nMax - m_nMin) * nPercent / -100.0);
    if (nPosition == g_nLastPosition)
        return;

    nPosition = std::min({nPosition, DIALOG_MAXIMUM, m_nMax});
    if (nPosition > m_nCurrent) {
        m_nCurrent = nPosition;
        if (!m_pDialog->Update(nPosition, wxEmptyString, nullptr))
            RequestCancel();
    }
    g_nLastPosition = nPosition;
}

std::int32_t RowPercent(std::int32_t nRow, std::int32_t nRows)
{
    return static_cast<std::int32_t>(static_cast<double>(nRow) / nRows * 100);
}
