// One table of what the fast roads reach against their targets.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace LS::Bench {

/// Measures and prints one row at a time:
///
///     what | measured | target | met | CPU ms
///
/// A row runs its work in several rounds, candidate and reference in turn within each, so that a change of
/// the processor's speed meets both. It takes CPU time, that of child processes included, and reports the
/// median of the rounds. The results are the caller's to compare: a row says nothing about them.
///
/// Options of a program with rows: --once measures one round (a trial, not a measurement), --rows-only leaves
/// the heading away, so that the rows of several programs make one table, and --only TEXT takes the rows
/// whose first column holds the text.
class RatioTable {
public:
    using Work = std::function<void()>;

    /// Reads the options and prints the heading. Unknown options end the process with code 2.
    RatioTable(int argc, char** argv);

    /// Prints how many times the reference's time the candidate takes.
    /// @param dTarget  the highest ratio that meets the target
    void Ratio(const std::string& sWhat, double dTarget, const Work& candidate, const Work& reference);

    /// Prints the candidate's time.
    /// @param dTargetMs  milliseconds of CPU time
    void Time(const std::string& sWhat, double dTargetMs, const Work& candidate);

    /// Prints an amount that isn't a time, such as memory.
    /// @param dTarget  the largest amount that meets the target
    /// @param measure  gives the amount of one round
    void Amount(const std::string& sWhat, const std::string& sUnit, double dTarget,
                const std::function<double()>& measure);

    /// Prints a row without a measurement, such as for an instruction set that this machine lacks.
    void Missing(const std::string& sWhat, const std::string& sReason);

    /// Whether --only takes this row; for a preparation that takes long.
    bool Wants(const std::string& sWhat) const;

private:
    int m_nRounds = 7;
    std::string m_sOnly;
};

/// The main function of a program whose preparations can fail.
/// @param measure  prints its rows
/// @return the exit code: 0, or 1 after an exception, which is told on the error stream
int PrintRows(int argc, char** argv, const std::function<void(RatioTable& table)>& measure);

/// Throws std::runtime_error with these words unless bDone.
void Require(bool bDone, const char* szOtherwise);

} // namespace LS::Bench
