// The headless program with a series, outputs of every format, and a fault on its way.
#pragma once

#include "tests/cli/ProgramRun.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace LS::Tests {

/// What a run may end with: done, unusable input, a failed merge, an unwritable output.
/// @return whether the code is one of them; a signal or a time limit is not
bool IsClearOutcome(int nCode);

constexpr double MOST_SECONDS = 10; ///< after which a run counts as hanging

/// A folder with a series, one for outputs, one for temporary files.
class FaultyProgram : public testing::Test {
protected:
    explicit FaultyProgram(int nWidth = 24, int nHeight = 16);

    /// Runs the program on the series, with --force.
    /// @param vsOutputs  names in the folder of outputs; a name in .crv is that of the curves, and
    ///                   "ldr.tif" is the tone-mapped TIFF
    ProgramRun Merge(const std::vector<std::string>& vsOutputs, RunOptions options = {});

    /// The same with further options in front.
    ProgramRun MergeWith(std::vector<std::string> vsArguments, const std::vector<std::string>& vsOutputs,
                         RunOptions options = {});

    /// Fills the folder of outputs, or another one, with older files of these names.
    void PutOlderFiles(const std::vector<std::string>& vsOutputs, const std::string& sFolder = "") const;

    /// Looks at what a run left: nothing under the names but older files and whole new ones, all of them new
    /// after a success; nothing else beside them; no working files.
    /// @param sFolder  where the outputs are, unless they are in their usual folder
    void ExpectCleanOutcome(const ProgramRun& run, const std::vector<std::string>& vsOutputs,
                            const std::string& sFolder = "");

    /// The part of it that concerns the names asked for.
    void ExpectWholeFiles(const ProgramRun& run, const std::vector<std::string>& vsOutputs,
                          const std::string& sFolder);

    /// What an untroubled run writes under each of some names, found out once.
    const std::map<std::string, Bytes>& Untroubled(const std::vector<std::string>& vsOutputs);

    /// Empties the folder of outputs.
    void RemoveOutputs() const;

    TempFolder m_sources, m_outputs, m_temporary;
    std::vector<std::string> m_vsImages;

private:
    std::map<std::vector<std::string>, std::map<std::string, Bytes>> m_untroubled;
};

/// What a folder holds, sorted, hidden files included.
std::vector<std::string> NamesIn(const std::string& sFolder);

/// The seven output formats and the curves, in the two runs that they need: a .tif is of one kind in each.
const std::vector<std::vector<std::string>>& AllOutputs();

} // namespace LS::Tests
