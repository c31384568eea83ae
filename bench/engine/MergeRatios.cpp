// The merge against its targets: what it costs beside reading its sources and writing its result.
#include "Util/CpuFeatures.h"
#include "Util/FileDescriptor.h"
#include "Util/Paths.h"
#include "bench/support/Photographs.h"
#include "bench/support/Ratios.h"
#include "engine/CacheFolder.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "engine/OwnedCurves.h"
#include "tests/support/TempFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <string>
#include <vector>

using namespace LS::Bench;
using LS::Util::InstructionSet;

namespace {

void Merge(const std::vector<std::wstring>& vsFiles)
{
    ResetWorkspace();
    OwnedCurves curves;
    LoadCurves(nullptr, curves.Get());
    const std::vector<float> vfStops(vsFiles.size(), Photographs::F_NUMBER), vfRest(vsFiles.size(), 0);
    Require(MergeExposures(vsFiles, Photographs::WIDTH, Photographs::HEIGHT, Photographs::Shutters(), vfStops,
                           vfRest, vfRest, curves.Get(), nullptr, &Workspace()),
            "the merge failed");
    curves.Release();
}

/// Reads the rows of all sources in turn and writes as many floats for each, without any arithmetic.
void ReadAndWrite(const std::vector<std::wstring>& vsFiles, const std::string& sResult)
{
    std::vector<LS::Util::FileDescriptor> vSources;
    vSources.reserve(vsFiles.size());
    for (const std::wstring& sFile : vsFiles)
        vSources.emplace_back(::open(LS::Util::NarrowPath(sFile).c_str(), O_RDONLY | O_CLOEXEC));
    ::unlink(sResult.c_str());
    const LS::Util::FileDescriptor result(::open(sResult.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666));

    std::vector<char> source(4 * static_cast<std::size_t>(Photographs::WIDTH)), merged(3 * source.size());
    for (std::int32_t y = 0; y < Photographs::HEIGHT; ++y) {
        for (const auto& file : vSources)
            Require(::read(file.Get(), source.data(), source.size()) == std::ssize(source), "not read");
        Require(::write(result.Get(), merged.data(), merged.size()) == std::ssize(merged), "not written");
    }
}

void MeasureMerge(RatioTable& table)
{
    const LS::Tests::TempFolder folder;
    RedirectCacheFolder(folder.WideFile("hdrcache"));

    std::vector<std::wstring> vsFiles;
    for (std::size_t i = 0; i < Photographs::COUNT; ++i) {
        vsFiles.push_back(folder.WideFile("source" + std::to_string(i)));
        Photographs::WriteSource(i, LS::Util::NarrowPath(vsFiles.back()));
    }
    const struct {
        const char* szWhat;
        InstructionSet set;
        double dTarget;
    } rows[] = {
        {"merge, 5 x 24 MP, best kernels: beside reading and writing alone", InstructionSet::Best, 2.2},
        {"merge, 5 x 24 MP, baseline kernels: beside reading and writing alone", InstructionSet::Baseline,
         3.0},
    };
    for (const auto& row : rows) {
        LS::Util::LimitInstructionSet(row.set);
        table.Ratio(
            row.szWhat, row.dTarget, [&] { Merge(vsFiles); },
            [&] { ReadAndWrite(vsFiles, folder.File("result")); });
    }
    ResetWorkspace(); // while its folder still exists
}

} // namespace

int main(int argc, char** argv)
{
    return PrintRows(argc, argv, MeasureMerge);
}
