// How long a job has run and will run, and how wide its gauge may count.
#pragma once

#include <wx/string.h>

#include <cstdint>

namespace LS::Widgets {

/// A time in seconds that isn't known.
constexpr std::uint32_t UNKNOWN_TIME = 0xFFFFFFFF;

/// "h:mm:ss" of a time in seconds; "Unknown" for UNKNOWN_TIME.
wxString TimeText(std::uint32_t nSeconds);

/// Seconds between two readings of the wall clock; 0 if it was set back in between.
std::uint32_t SecondsBetween(std::uint32_t nStart, std::uint32_t nStop);

/// By what the values of a job are divided to keep the range of its gauge within 16 bits.
/// @param nMaximum  0 or more
std::int32_t GaugeFactor(std::int32_t nMaximum);

/// The estimated length of a job, calmed: in its first seconds it follows each report, later it moves only
/// when three reports in a row put it on the same side.
class TimeEstimate {
public:
    /// Takes in a report, at most one a second and always the last.
    /// @param nElapsed  seconds since the job began
    /// @param nStopped  how many of them it stood still
    /// @param nValue    how far it is, not 0
    /// @param nMaximum  where it ends
    void Report(std::uint32_t nElapsed, std::uint32_t nStopped, std::int32_t nValue, std::int32_t nMaximum);

    /// Lets the next rise through at once: a job that stood still takes longer by that much.
    void ExpectRise() { m_ctDelay = m_delay; }

    /// Seconds from begin to end; UNKNOWN_TIME if 32 bits can't hold them.
    std::uint32_t Estimated() const { return m_displayEstimated; }

    /// Seconds that are left after the elapsed ones, 0 for a job that is overdue.
    std::uint32_t Remaining(std::uint32_t nElapsed) const;

private:
    std::uint32_t m_lastTimeUpdate = 0; ///< elapsed seconds at the last estimate
    std::int32_t m_delay = 3;           ///< confirmations needed before the estimate on show moves
    std::int32_t m_ctDelay = 0;         ///< confirmations so far: positive for rises, negative for falls
    std::uint32_t m_displayEstimated = 0;
};

} // namespace LS::Widgets
