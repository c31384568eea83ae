// From photographs to source cache files, against its target.
#include "Util/HeapPolicy.h"
#include "bench/support/Photographs.h"
#include "bench/support/Ratios.h"
#include "image/ImageDecoder.h"
#include "image/SourceCache.h"
#include "tests/support/TempFolder.h"

#include <wx/init.h>

#include <string>

namespace {

void MeasureConversion(LS::Bench::RatioTable& table)
{
    const wxInitializer library;
    LS::Util::KeepFreedImages(); // as the headless program does
    RegisterImageHandlers();
    const LS::Tests::TempFolder folder;
    const std::string sPhotograph = folder.File("photograph.jpg");
    LS::Bench::Photographs::WriteJpeg(2, sPhotograph);
    int nSource = 0;
    const auto convert = [&] {
        const std::string sSource = folder.File(std::to_string(++nSource) + ".tmp");
        LS::Bench::Require(WriteSourceCacheFile(DecodeImage(sPhotograph).image, sSource, {}),
                           "not converted");
    };
    table.Ratio("JPEG to source cache file, 24 MP: beside decoding alone", 2.1, convert,
                [&] { LS::Bench::Photographs::DecodeJpeg(sPhotograph); });
}

} // namespace

int main(int argc, char** argv)
{
    return LS::Bench::PrintRows(argc, argv, MeasureConversion);
}
