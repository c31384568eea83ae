// The times of a progress dialog, apart from its window.
#include "Widgets/TimeEstimate.h"

#include <algorithm>
#include <cmath>

namespace LS::Widgets {

namespace {

constexpr std::int32_t MAX_GAUGE_RANGE = 65536;
constexpr std::uint32_t LIVELY_SECONDS = 3; // so long each new estimate is shown at once

std::uint32_t LengthOfJob(std::uint32_t nElapsed, std::uint32_t nStopped, std::int32_t nValue,
                          std::int32_t nMaximum)
{
    const double dWorked = static_cast<double>(nElapsed) - nStopped;
    const double dLength = nStopped + std::trunc(dWorked * nMaximum / nValue);
    return static_cast<std::uint32_t>(std::clamp(dLength, 0.0, static_cast<double>(UNKNOWN_TIME)));
}

} // namespace

wxString TimeText(std::uint32_t nSeconds)
{
    if (nSeconds == UNKNOWN_TIME)
        return "Unknown";
    const unsigned long nTime = nSeconds;
    return wxString::Format("%lu:%02lu:%02lu", nTime / 3600, nTime % 3600 / 60, nTime % 60);
}

std::uint32_t SecondsBetween(std::uint32_t nStart, std::uint32_t nStop)
{
    return nStop > nStart ? nStop - nStart : 0;
}

std::int32_t GaugeFactor(std::int32_t nMaximum)
{
    return nMaximum / MAX_GAUGE_RANGE + 1;
}

void TimeEstimate::Report(std::uint32_t nElapsed, std::uint32_t nStopped, std::int32_t nValue,
                          std::int32_t nMaximum)
{
    if (nElapsed <= m_lastTimeUpdate && nValue != nMaximum)
        return;
    m_lastTimeUpdate = nElapsed;

    const std::uint32_t nEstimated = LengthOfJob(nElapsed, nStopped, nValue, nMaximum);
    if (nEstimated > m_displayEstimated && m_ctDelay >= 0)
        ++m_ctDelay;
    else if (nEstimated < m_displayEstimated && m_ctDelay <= 0)
        --m_ctDelay;
    else
        m_ctDelay = 0;

    const bool bConfirmed = m_ctDelay >= m_delay || m_ctDelay <= -m_delay;
    const bool bEarly = nElapsed >= 1 && nElapsed <= LIVELY_SECONDS;
    const bool bOverdue = nElapsed > m_displayEstimated;
    if (bConfirmed || bEarly || bOverdue || nValue == nMaximum) {
        m_displayEstimated = nEstimated;
        m_ctDelay = 0;
    }
}

std::uint32_t TimeEstimate::Remaining(std::uint32_t nElapsed) const
{
    if (m_displayEstimated == UNKNOWN_TIME)
        return UNKNOWN_TIME;
    return m_displayEstimated > nElapsed ? m_displayEstimated - nElapsed : 0;
}

} // namespace LS::Widgets
