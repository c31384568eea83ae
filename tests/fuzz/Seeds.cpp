// Small inputs of each target to begin with.
#include "tests/fuzz/Seeds.h"

#include "app/IpcWire.h"
#include "tests/cli/Photographs.h"
#include "tests/faults/SamplePictures.h"

#include <exiv2/exiv2.hpp>

#include <cmath>
#include <cstring>
#include <string>

using LS::Tests::Bytes;

namespace LS::Fuzz {

namespace {

Bytes Of(std::string_view sText)
{
    return {sText.begin(), sText.end()};
}

std::vector<Bytes> Of(std::initializer_list<std::string_view> texts)
{
    std::vector<Bytes> vSeeds;
    for (const std::string_view sText : texts)
        vSeeds.push_back(Of(sText));
    return vSeeds;
}

std::vector<Bytes> Pictures()
{
    std::vector<Bytes> vSeeds;
    for (const Tests::SamplePicture& picture : Tests::SamplePictures())
        for (const char* szKind : {".jpg", ".png", ".tif"})
            if (picture.sName.ends_with(szKind))
                vSeeds.push_back(picture.bytes);
    vSeeds.push_back(Tests::JpegOfManyScans(40, 24, 5));
    return vSeeds;
}

std::vector<Bytes> Photographs()
{
    const Tests::TempFolder folder;
    Tests::WritePhotograph(folder.File("plain.jpg"),
                           {.width = 8, .height = 8, .taken = "2009:03:07 14:05:03.25"});
    Tests::WritePhotograph(folder.File("thumbnail.jpg"), {.width = 8, .height = 8});
    const auto file = Exiv2::ImageFactory::open(folder.File("thumbnail.jpg"));
    file->readMetadata();
    const Bytes small = Tests::Jpeg({.nWidth = 8, .nHeight = 8});
    Exiv2::ExifThumb(file->exifData())
        .setJpegThumbnail(small.data(), static_cast<long>(small.size()), {72, 1}, {72, 1}, 2);
    file->writeMetadata();
    return {Tests::ReadBytes(folder.File("plain.jpg")), Tests::ReadBytes(folder.File("thumbnail.jpg"))};
}

std::vector<Bytes> Messages()
{
    std::vector<Bytes> vSeeds = Of({"open|/a.jpg|/b.jpg", "|||", ""});
    for (const IpcMessage& message :
         {IpcMessage{IpcCode::Connect, 0, "topic"}, IpcMessage{IpcCode::Execute, 1, "open|/a.jpg"},
          IpcMessage{IpcCode::Disconnect, 0, ""}})
        vSeeds.push_back(Of(EncodeIpcMessage(message)));
    return vSeeds;
}

/// Radiances behind the byte of a width.
Bytes Radiances(std::uint8_t nWidth, std::size_t nValues)
{
    Bytes seed(1 + nValues * sizeof(float), nWidth);
    for (std::size_t i = 0; i < nValues; ++i) {
        const float fValue = std::exp2(static_cast<float>(i % 40) - 20.0F);
        std::memcpy(&seed[1 + i * sizeof fValue], &fValue, sizeof fValue);
    }
    return seed;
}

} // namespace

std::vector<Bytes> Seeds(std::string_view sTarget)
{
    if (sTarget == "FuzzDecode")
        return Pictures();
    if (sTarget == "FuzzExif")
        return Photographs();
    if (sTarget == "FuzzSettings")
        return Of({"<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<LumiStrandBatch Version=\"6\" "
                   "Language=\"French\">\n"
                   "<Settings LastImagePath=\"/p\" /><Save ImageType=\"t\" JPEGCompression=\"95\" "
                   "/></LumiStrandBatch>",
                   "<a b='&lt;&#65;&#x42;'><!-- c --><![CDATA[d]]>e</a>",
                   "<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;</a>"});
    if (sTarget == "FuzzFileArgument")
        return Messages();
    if (sTarget == "FuzzCurve")
        return {Bytes(3072, 1), Bytes(3071, 2), Bytes(4000, 3), {}};
    if (sTarget == "FuzzNumber")
        return Of({"1/125", "0.5", "-2,25", "1e-3", "1e999", " 7 ", "nan", "0x1p3", "1/0", "1/2/"});
    if (sTarget == "FuzzRgbe")
        return {Radiances(7, 48), Radiances(8, 54), Radiances(255, 768), Radiances(0, 3)};
    return {};
}

} // namespace LS::Fuzz
