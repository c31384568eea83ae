// Small inputs of each target to begin with.
#include "tests/fuzz/Seeds.h"

#include "app/IpcWire.h"
#include "tests/cli/Photographs.h"
#include "tests/faults/SamplePictures.h"
#include "tests/support/BytePieces.h"

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <string>

using namespace LS::Tests;

namespace LS::Fuzz {

namespace {

std::vector<Bytes> AllOf(std::initializer_list<std::string_view> texts)
{
    std::vector<Bytes> vSeeds(texts.size());
    std::ranges::transform(texts, vSeeds.begin(), BytesOf);
    return vSeeds;
}

/// Those sample pictures whose names end in one of some ways.
std::vector<Bytes> Pictures(std::initializer_list<std::string_view> ends)
{
    std::vector<Bytes> vSeeds;
    for (const SamplePicture& picture : SamplePictures())
        if (std::ranges::any_of(ends, [&](std::string_view sEnd) { return picture.sName.ends_with(sEnd); }))
            vSeeds.push_back(picture.bytes);
    return vSeeds;
}

/// Frames of other formats that the metadata library reads, as far as their first tags.
/// @param exif  a TIFF with tags
std::vector<Bytes> OtherMetadata(const Bytes& exif)
{
    const auto box = [](std::string_view sName, const Bytes& content) {
        return Joined({BigEndian(8 + content.size()), BytesOf(sName), content});
    };
    const Bytes webp = Joined({BytesOf("WEBP"), RiffChunk("VP8X", {8, 0, 0, 0, 7, 0, 0, 7, 0, 0}),
                               RiffChunk("VP8L", {0x2F, 7, 0xC0, 1, 0, 0}), RiffChunk("EXIF", exif)});
    const Bytes exifUuid = BytesOf("JpgTiffExif->JP2");
    const Bytes jp2Header = box("ihdr", {0, 0, 0, 8, 0, 0, 0, 8, 0, 3, 7, 7, 0, 0});
    const Bytes raw = Joined({BytesOf("FUJIFILMCCD-RAW 0201FF383501"), Bytes(56), BigEndian(160),
                              BigEndian(exif.size()), Bytes(68)});
    return {
        RiffChunk("RIFF", webp),
        Joined({box("jP  ", {0x0D, 0x0A, 0x87, 0x0A}),
                box("ftyp", BytesOf(std::string_view("jp2 \0\0\0\0jp2 ", 12))), box("jp2h", jp2Header),
                box("uuid", Joined({exifUuid, exif})), box("jp2c", {0xFF, 0x4F})}),
        Joined({raw, exif}),
        BytesOf("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 8 8\n%%EndComments\n%%BeginProlog\n%%EndProlog\n"
                "%begin_xml_code\n<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta/>"
                "<?xpacket end='w'?>\n%end_xml_code\n%%EOF\n"),
        BytesOf("<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta xmlns:x='adobe:ns:meta/'>"
                "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description "
                "exif:FNumber='8/1' xmlns:exif='http://ns.adobe.com/exif/1.0/'/></rdf:RDF></x:xmpmeta>"),
    };
}

/// The tags of a photograph as a TIFF.
Bytes ExifOf(const std::string& sPhotograph)
{
    const auto file = Exiv2::ImageFactory::open(sPhotograph);
    file->readMetadata();
    Exiv2::Blob tags;
    Exiv2::ExifParser::encode(tags, Exiv2::littleEndian, file->exifData());
    return {tags.begin(), tags.end()};
}

std::vector<Bytes> Photographs()
{
    const TempFolder folder;
    WritePhotograph(folder.File("plain.jpg"), {.width = 8, .height = 8, .taken = "2009:03:07 14:05:03.25"});
    WritePhotograph(folder.File("thumbnail.jpg"), {.width = 8, .height = 8});
    const auto file = Exiv2::ImageFactory::open(folder.File("thumbnail.jpg"));
    file->readMetadata();
    const Bytes small = Jpeg({.nWidth = 8, .nHeight = 8});
    Exiv2::ExifThumb(file->exifData())
        .setJpegThumbnail(small.data(), static_cast<long>(small.size()), {72, 1}, {72, 1}, 2);
    file->writeMetadata();
    std::vector<Bytes> vSeeds = OtherMetadata(ExifOf(folder.File("plain.jpg")));
    for (const char* szName : {"plain.jpg", "thumbnail.jpg"})
        vSeeds.push_back(ReadBytes(folder.File(szName)));
    // Without exposures, but each has a reader of its own.
    for (const Bytes& picture : Pictures({"picture.png", "none.tif", ".gif", ".bmp", ".tga"}))
        vSeeds.push_back(picture);
    return vSeeds;
}

std::vector<Bytes> Messages()
{
    std::vector<Bytes> vSeeds = AllOf({"open|/a.jpg|/b.jpg", "|||", ""});
    for (const IpcMessage& message :
         {IpcMessage{IpcCode::Connect, 0, "topic"}, IpcMessage{IpcCode::Execute, 1, "open|/a.jpg"},
          IpcMessage{IpcCode::Disconnect, 0, ""}})
        vSeeds.push_back(BytesOf(EncodeIpcMessage(message)));
    return vSeeds;
}

} // namespace

std::vector<Bytes> Seeds(std::string_view sTarget)
{
    if (sTarget == "FuzzDecode")
        return Pictures({".jpg", ".png", ".tif"});
    if (sTarget == "FuzzExif")
        return Photographs();
    if (sTarget == "FuzzSettings")
        return AllOf({"<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<LumiStrandBatch Version=\"6\" "
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
        return AllOf({"1/125", "0.5", "-2,25", "1e-3", "1e999", " 7 ", "nan", "0x1p3", "1/0", "1/2/"});
    return {};
}

} // namespace LS::Fuzz
