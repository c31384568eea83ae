// The files that a run writes: each beside its name until all are complete.
#pragma once

#include "Util/ReplacedFile.h"
#include "cli/Console.h"
#include "cli/ExitCode.h"
#include "cli/Options.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// All that is not published is removed when this object goes.
class Outputs {
public:
    Outputs(const Options& options, Console& console);

    /// Refuses what exists already, unless replacing is asked for, and what is a photograph.
    /// To be asked before the work. @return Done or Write
    ExitCode Check();

    /// Whether all that is to be written exists already.
    bool AllExist() const;

    /// Writes one file beside its name.
    /// @param write  fills the file, by its path or through it; says what went wrong, or nothing
    /// @return Done; Write or Cancelled, which is told
    ExitCode Write(const std::string& sPath,
                   const std::function<std::string(LS::Util::ReplacedFile& file)>& write);

    /// Gives all files their names. @return Done or Write
    ExitCode Publish();

private:
    struct PendingFile {
        std::string sPath;
        std::unique_ptr<LS::Util::ReplacedFile> pFile;
    };

    std::vector<std::string> Paths() const;

    const Options& m_options;
    Console& m_console;
    std::vector<PendingFile> m_vFiles;
};
