// A whole run of the headless program, on the five photographs.
#include "bench/support/HeadlessRun.h"

#include "bench/support/Photographs.h"
#include "bench/support/Ratios.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>

namespace LS::Bench {

HeadlessRun::HeadlessRun(const std::string& sProgram, const std::string& sFolder)
    : m_sPicture(sFolder + "/merged.exr"),
      m_vsArguments{
          sProgram,     "--quiet", "--force", "--output", m_sPicture, "--shutter", "1/500,1/125,1/31,1/8,1/2",
          "--aperture", "8"}
{
    for (std::size_t i = 0; i < Photographs::COUNT; ++i) {
        m_vsPhotographs.push_back(sFolder + "/photograph" + std::to_string(i) + ".jpg");
        Photographs::WriteJpeg(i, m_vsPhotographs.back());
    }
    m_vsArguments.insert(m_vsArguments.end(), m_vsPhotographs.begin(), m_vsPhotographs.end());
}

double HeadlessRun::operator()() const
{
    std::vector<std::string> vsArguments = m_vsArguments;
    std::vector<char*> vszArguments;
    vszArguments.reserve(vsArguments.size() + 1);
    for (std::string& sArgument : vsArguments)
        vszArguments.push_back(sArgument.data());
    vszArguments.push_back(nullptr);
    pid_t nProcess = 0;
    Require(::posix_spawn(&nProcess, vszArguments[0], nullptr, nullptr, vszArguments.data(), environ) == 0,
            "not started");
    int nStatus = 0;
    rusage usage{};
    Require(::wait4(nProcess, &nStatus, 0, &usage) == nProcess && nStatus == 0, "the run failed");
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

} // namespace LS::Bench
