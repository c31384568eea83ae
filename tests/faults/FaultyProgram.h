// The headless program with a series, outputs of every format, and a fault on its way.
#pragma once

#include "tests/cli/ProgramRun.h"

#include <map>

namespace LS::Tests {

constexpr double MOST_SECONDS = 10; ///< after which a run counts as hanging

/// A series in the folder of photographs, and the way to look at what a run left.
class FaultyProgram : public ProgramFixture {
protected:
    explicit FaultyProgram(int nWidth = 24, int nHeight = 16);

    /// Runs the program on the series, with --force.
    /// @param outputs  names in the folder of outputs; a name in .crv is that of the curves, and "ldr.tif" is
    ///                 the tone-mapped TIFF
    /// @param arguments  further options in front
    ProgramRun Merge(const Names& outputs, RunOptions options = {}, Arguments arguments = {}) const;

    /// Fills the folder of outputs, or another one, with older files of these names.
    void PutOlderFiles(const Names& outputs, const std::string& sFolder = "") const;

    /// Looks at what a run left: nothing under the names but older files and whole new ones, all of them new
    /// after a success; nothing else beside them; no working files. What it ends with is one of: done,
    /// unusable input, a failed merge, an unwritable output. A failure is reported.
    /// @param sFolder  where the outputs are, unless they are in their usual folder
    void ExpectCleanOutcome(const ProgramRun& run, const Names& outputs, const std::string& sFolder = "");

    /// The part of it that concerns the names asked for.
    void ExpectWholeFiles(const ProgramRun& run, const Names& outputs, const std::string& sFolder);

    /// Removes what no program can take away after a sudden end: its working folder, and outputs without a
    /// name.
    void RemoveTraces() const;

    /// What an untroubled run writes under each of some names, found out once.
    const std::map<std::string, Bytes>& Untroubled(const Names& outputs);

    std::vector<std::string> m_vsImages;

private:
    std::map<Names, std::map<std::string, Bytes>> m_untroubled;
};

/// The seven output formats and the curves, in the two runs that they need: a .tif is of one kind in each.
const Names ALL_OUTPUTS[] = {{"x.bmp", "x.crv", "x.exr", "x.hdr", "x.jpg", "x.png", "x.tif"}, {"ldr.tif"}};

} // namespace LS::Tests
