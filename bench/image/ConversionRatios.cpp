// From photographs to source cache files, against its target.
#include "bench/support/Photographs.h"
#include "bench/support/Ratios.h"
#include "image/ImageDecoder.h"
#include "image/SourceCache.h"
#include "tests/support/TempFolder.h"

#include <wx/init.h>

#include <cstdio>
#include <stdexcept>
#include <string>

int main(int argc, char** argv)
{
    const wxInitializer library;
    RegisterImageHandlers();
    LS::Bench::RatioTable table(argc, argv);
    const LS::Tests::TempFolder folder;
    const std::string sPhotograph = folder.File("photograph.jpg"), sSource = folder.File("photograph.tmp");
    LS::Bench::Photographs::WriteJpeg(2, sPhotograph);
    const auto convert = [&] {
        std::remove(sSource.c_str());
        if (!WriteSourceCacheFile(DecodeImage(sPhotograph).image, sSource, {}))
            throw std::runtime_error("not converted");
    };
    table.Ratio("JPEG to source cache file, 24 MP: beside decoding alone", 2.1, convert,
                [&] { LS::Bench::Photographs::DecodeJpeg(sPhotograph); });
    return 0;
}
