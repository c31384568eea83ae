// What takes bytes from outside, each as one function for a fuzzer and for the tests.
#include "tests/fuzz/Targets.h"

#include "Util/Assertion.h"
#include "Util/FailureLog.h"
#include "Util/FileDescriptor.h"
#include "Util/Numbers.h"
#include "Widgets/NumberCell.h"
#include "app/FileArgument.h"
#include "app/IpcWire.h"
#include "engine/HDRRoutine.h"
#include "engine/OwnedCurves.h"
#include "image/ExifReader.h"
#include "image/ExifThumbnail.h"
#include "image/ImageDecoder.h"
#include "image/ImageHeader.h"
#include "xml/XmlNode.h"

#include <exiv2/exif.hpp>
#include <wx/arrstr.h>
#include <wx/init.h>
#include <wx/log.h>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace LS::Fuzz {

namespace {

std::string_view Text(const std::uint8_t* pData, std::size_t nBytes)
{
    return {reinterpret_cast<const char*>(pData), nBytes};
}

/// A file in memory, with a path as long as it lives.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* pData, std::size_t nBytes) : m_file(memfd_create("input", MFD_CLOEXEC))
    {
        LS_ASSERT(m_file.IsOpen());
        LS_ASSERT(write(m_file.Get(), pData, nBytes) == static_cast<ssize_t>(nBytes));
    }

    int Descriptor() const { return m_file.Get(); }
    std::string Path() const { return "/proc/self/fd/" + std::to_string(m_file.Get()); }

private:
    Util::FileDescriptor m_file;
};

constexpr std::uint64_t MOST_PIXELS = 1 << 20; // more tell nothing new and take long

} // namespace

void PrepareTargets()
{
    static const wxInitializer& library = *new wxInitializer;
    LS_ASSERT(library.IsOk());
    wxLog::EnableLogging(false);
    Util::SetFailureSink([](const std::string&) {});
    RegisterImageHandlers();
}

int FuzzDecode(const std::uint8_t* pData, std::size_t nBytes)
{
    const MemoryFile file(pData, nBytes);
    const PictureFormat format = FormatOf(file.Descriptor());
    const std::uint64_t nPixels = PixelsAsked(file.Descriptor(), format);
    const int nScans = Scans(file.Descriptor(), format, 5);
    LS_ASSERT(nScans >= 1 && nScans <= 6);
    // Other formats, and pictures of many scans, are decoded in a process of their own.
    if (format == PictureFormat::Other || nPixels > MOST_PIXELS || nScans > 5)
        return 0;
    const DecodedImage decoded = DecodeBytes(pData, nBytes, wxBITMAP_TYPE_ANY);
    LS_ASSERT((decoded.outcome == DecodeOutcome::Decoded) == decoded.image.IsOk());
    LS_ASSERT(decoded.image.IsOk() == decoded.sReason.empty());
    return 0;
}

int FuzzExif(const std::uint8_t* pData, std::size_t nBytes)
{
    const MemoryFile file(pData, nBytes);
    ExposureValues values;
    std::string sReason;
    const ExifOutcome outcome = ReadExif(file.Path(), values, &sReason);
    LS_ASSERT(outcome != ExifOutcome::Failed || !sReason.empty());
    ShotValues shot;
    LS_ASSERT(ReadShot(file.Path(), shot) == outcome);
    try {
        Exiv2::ExifData tags;
        ReadExifThumbnail(wxString::FromUTF8(file.Path()), tags, sReason);
    } catch (const std::exception&) { // a file that the library can't read
    }
    return 0;
}

int FuzzSettings(const std::uint8_t* pData, std::size_t nBytes)
{
    const MemoryFile file(pData, nBytes);
    const auto pRoot = Xml::XmlNode::CreateElement();
    pRoot->SetFileName(wxString::FromUTF8(file.Path()).ToStdWstring());
    const bool bLoaded = pRoot->Load();
    Xml::GetInt(L"Save/JPEGCompression", 95, pRoot);
    LS_ASSERT(std::isfinite(Xml::GetDouble(L"Version", pRoot)));
    const std::string sAgain = pRoot->ToString();
    if (bLoaded && !sAgain.empty()) { // what is written can be read
        const auto pCopy = Xml::XmlNode::CreateElement();
        LS_ASSERT(pCopy->Parse(wxString::FromUTF8(sAgain).ToStdWstring()));
    }
    return 0;
}

int FuzzFileArgument(const std::uint8_t* pData, std::size_t nBytes)
{
    for (const wxString& path :
         PathsOfFileArgument(wxString::From8BitData(reinterpret_cast<const char*>(pData), nBytes)))
        LS_ASSERT(path.find('|') == wxString::npos);

    IpcReader reader;
    const std::size_t nFirst = nBytes / 2; // messages arrive in pieces
    reader.Append(Text(pData, nFirst));
    IpcMessage message;
    for (int i = 0; i < 2; ++i) {
        while (reader.Next(message) == IpcReader::Result::Message)
            LS_ASSERT(message.sData.size() <= MAX_IPC_DATA);
        if (i == 0)
            reader.Append(Text(pData + nFirst, nBytes - nFirst));
    }
    return 0;
}

int FuzzCurve(const std::uint8_t* pData, std::size_t nBytes)
{
    constexpr std::size_t CURVE_BYTES = 256 * sizeof(float);
    const MemoryFile file(pData, nBytes);
    OwnedCurves curves;
    LS_ASSERT(LoadCurves(file.Path().c_str(), curves.Get()));
    LS_ASSERT(curves.Get().size() == 3);
    for (std::size_t c = 0; c < 3; ++c) {
        const std::size_t nThere = std::min(CURVE_BYTES, nBytes - std::min(nBytes, c * CURVE_BYTES));
        if (nThere > 0)
            LS_ASSERT(std::memcmp(curves.Get()[c], pData + c * CURVE_BYTES, nThere) == 0);
        for (std::size_t i = (nThere + 3) / sizeof(float); i < 256; ++i)
            LS_ASSERT(curves.Get()[c][i] == 0);
    }
    return 0;
}

int FuzzNumber(const std::uint8_t* pData, std::size_t nBytes)
{
    const std::string_view sText = Text(pData, nBytes);
    const auto check = [](const std::optional<double>& number) {
        LS_ASSERT(!number || std::isfinite(*number));
    };
    check(Util::ParseNumber(sText));
    check(Util::ParseTypedNumber(sText));
    check(Util::ParseFraction(sText));
    if (const auto number = Util::ParseNumber(sText)) // what is written can be read
        LS_ASSERT(Util::ParseNumber(Util::FormatFixed(*number, 4)));

    const wxString cell = wxString::From8BitData(reinterpret_cast<const char*>(pData), nBytes);
    check(ReadNumber(cell));
    check(ReadNumberOrFraction(cell));
    ShownNumber(cell, 4);
    if (const auto text = NumberCellText(cell, 0.0005F, 100.0F))
        LS_ASSERT(ReadNumber(*text).value_or(-1) >= 0);
    return 0;
}

} // namespace LS::Fuzz
