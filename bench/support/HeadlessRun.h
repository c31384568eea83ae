// A whole run of the headless program, on the five photographs.
#pragma once

#include <string>
#include <vector>

namespace LS::Bench {

/// The five photographs as JPEG files, and a run that merges them into an OpenEXR file.
class HeadlessRun {
public:
    /// Writes photograph0.jpg and so on.
    /// @param sProgram  the headless program
    /// @param sFolder   receives the photographs, and merged.exr from each run
    HeadlessRun(const std::string& sProgram, const std::string& sFolder);

    const std::vector<std::string>& Photographs() const { return m_vsPhotographs; }
    const std::string& Picture() const { return m_sPicture; }

    /// Runs the program to its end. @return its peak memory in MiB
    double operator()() const;

private:
    std::vector<std::string> m_vsPhotographs;
    std::string m_sPicture;
    std::vector<std::string> m_vsArguments;
};

} // namespace LS::Bench
