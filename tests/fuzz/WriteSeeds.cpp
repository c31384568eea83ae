// Writes the seeds of each target into a folder of its name. Usage: write_seeds FOLDER
#include "tests/fuzz/Seeds.h"
#include "tests/fuzz/Targets.h"

#include <filesystem>

int main(int nArguments, char** szArguments)
{
    if (nArguments != 2)
        return 1;
    LS::Fuzz::PrepareTargets();
    for (const LS::Fuzz::NamedTarget& target : LS::Fuzz::TARGETS) {
        const std::string sFolder = std::string(szArguments[1]) + "/" + target.szName;
        std::filesystem::create_directories(sFolder);
        int n = 0;
        for (const LS::Tests::Bytes& seed : LS::Fuzz::Seeds(target.szName))
            LS::Tests::WriteElements(sFolder + "/" + std::to_string(n++), seed);
    }
    return 0;
}
