// Decodes photographs, safely also where the file is damaged or hostile.
#include "image/ImageDecoder.h"

#include "Util/FailureLog.h"
#include "Util/FileDescriptor.h"
#include "Util/HeapPolicy.h"
#include "Util/RegularFile.h"
#include "image/DecoderProcess.h"
#include "image/ImageHeader.h"
#include "image/MetadataFile.h"

#include <wx/log.h>
#include <wx/wfstream.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <utility>

namespace {

/// Collects the image library's errors and warnings as long as it lives.
class LibraryLog : public wxLog {
public:
    LibraryLog() : m_pPrevious(wxLog::SetActiveTarget(this)) {}
    LibraryLog(const LibraryLog&) = delete;
    LibraryLog& operator=(const LibraryLog&) = delete;
    ~LibraryLog() override { wxLog::SetActiveTarget(m_pPrevious); }

    /// All of it in one line.
    std::string Text() const
    {
        return m_sText.empty() ? "damaged, or of a kind that the decoder doesn't know" : m_sText;
    }

protected:
    void DoLogRecord(wxLogLevel nLevel, const wxString& message, const wxLogRecordInfo&) override
    {
        const std::string sMessage = message.utf8_string();
        // Some faults are met row after row.
        if (nLevel <= wxLOG_Warning && m_sText.find(sMessage) == std::string::npos)
            m_sText.append(m_sText.empty() ? "" : "; ").append(sMessage);
    }

private:
    wxLog* m_pPrevious;
    std::string m_sText;
};

DecodedImage Failure(DecodeOutcome outcome, std::string sReason)
{
    return {outcome, wxImage(), std::move(sReason)};
}

wxBitmapType HandlerOf(PictureFormat format)
{
    switch (format) {
    case PictureFormat::Jpeg:
        return wxBITMAP_TYPE_JPEG;
    case PictureFormat::Png:
        return wxBITMAP_TYPE_PNG;
    case PictureFormat::Tiff:
        return wxBITMAP_TYPE_TIFF;
    case PictureFormat::Other:
        break;
    }
    return wxBITMAP_TYPE_ANY;
}

/// Decodes an open file from its start with the library's decoder of a format.
DecodedImage Decode(int nFile, PictureFormat format, const LibraryLog& log)
{
    // The stream owns what it reads; the caller's descriptor must survive it.
    LS::Util::FileDescriptor own(::fcntl(nFile, F_DUPFD_CLOEXEC, 0));
    std::FILE* pFile = own.IsOpen() ? ::fdopen(own.Get(), "rb") : nullptr;
    if (!pFile)
        return Failure(DecodeOutcome::Undecodable, LS::Util::SystemError());
    own.Release();
    wxFFileInputStream file(pFile);
    wxBufferedInputStream stream(file);

    try {
        wxImage image;
        // This decoder prints to the error stream unless it is told to be silent.
        if (format == PictureFormat::Jpeg)
            image.SetLoadFlags(image.GetLoadFlags() & ~wxImage::Load_Verbose);
        if (image.LoadFile(stream, HandlerOf(format)) && image.IsOk())
            return {DecodeOutcome::Decoded, image, {}};
    } catch (const std::exception& fault) {
        return Failure(DecodeOutcome::Undecodable, fault.what());
    }
    return Failure(DecodeOutcome::Undecodable, log.Text());
}

/// How many scans of a JPEG pass without watching. No writer makes more than 32: the library's own script for
/// progressive ones has ten. And all of them go over no more pixels than the largest picture has.
int MostScans(std::uint64_t nPixels)
{
    const std::uint64_t nMost = std::uint64_t{MAX_DECODED_PIXELS} / std::max<std::uint64_t>(nPixels, 1);
    return static_cast<int>(std::min<std::uint64_t>(nMost, 32));
}

/// The decoder of PNG unpacks all that is there, whatever the picture needs: at most a thousand times this.
constexpr std::uint64_t MOST_PACKED_BYTES = std::uint64_t{2} << 20;

/// Whether a picture's decoder may crash on damaged files, or take a time that its size doesn't bound.
bool NeedsWatching(int nFile, PictureFormat format, std::uint64_t nPixels, std::uint64_t nFileBytes)
{
    const int nMostScans = MostScans(nPixels);
    return format == PictureFormat::Other || IsOversized(nFileBytes, format) ||
           Scans(nFile, format, nMostScans) > nMostScans ||
           (format == PictureFormat::Png && nFileBytes > MOST_PACKED_BYTES) ||
           !HoldsItsChunks(nFile, format) || !HasUsualLayout(nFile, format);
}

/// Time for a picture that is large both in pixels and in bytes.
std::chrono::milliseconds TimeFor(std::uint64_t nPixels, std::uint64_t nFileBytes)
{
    // A fifth of the pace of progressive JPEG.
    constexpr std::uint64_t PIXELS_PER_MILLISECOND = 8192, BYTES_PER_MILLISECOND = 4096;
    return std::chrono::milliseconds(
        std::min(nPixels / PIXELS_PER_MILLISECOND, nFileBytes / BYTES_PER_MILLISECOND));
}

/// What its decoder leaves to be turned. That of TIFF mirrors rows and columns as the tag asks, but doesn't
/// exchange them.
Orientation LeftByDecoder(PictureFormat format, Orientation orientation)
{
    if (format != PictureFormat::Tiff)
        return orientation;
    switch (orientation) {
    case Orientation::Transpose:
    case Orientation::AntiTranspose:
        return Orientation::Transpose;
    case Orientation::QuarterRight:
    case Orientation::QuarterLeft:
        return Orientation::AntiTranspose;
    default:
        return Orientation::Upright;
    }
}

/// @param orientation  how the stored picture lies
DecodedImage DecodeOpenFile(int nFile, std::chrono::milliseconds timeLimit, Orientation orientation)
{
    const LibraryLog log;
    const PictureFormat format = FormatOf(nFile);
    const std::uint64_t nPixels = PixelsAsked(nFile, format);
    if (nPixels > std::uint64_t{MAX_DECODED_PIXELS})
        return Failure(DecodeOutcome::Undecodable, "the header asks for more than 512 megapixels");
    LS::Util::ExpectLargeBlock(static_cast<std::size_t>(nPixels) * 3);
    const auto decode = [&] { return Decode(nFile, format, log); };
    const std::uint64_t nFileBytes = FileBytes(nFile);
    DecodedImage decoded = NeedsWatching(nFile, format, nPixels, nFileBytes)
                               ? DecodeInChild(decode, nFile, timeLimit + TimeFor(nPixels, nFileBytes))
                               : decode();
    if (decoded.image.IsOk() && !TurnUpright(decoded.image, LeftByDecoder(format, orientation)))
        return Failure(DecodeOutcome::Undecodable, "there is no memory to turn it upright");
    return decoded;
}

/// Fills an empty file; the position stays at its start.
bool Fill(int nFile, const unsigned char* pBytes, std::size_t nBytes)
{
    for (std::size_t nDone = 0; nDone < nBytes;) {
        const ::ssize_t nWritten =
            ::pwrite(nFile, pBytes + nDone, nBytes - nDone, static_cast<::off_t>(nDone));
        if (nWritten <= 0)
            return false;
        nDone += static_cast<std::size_t>(nWritten);
    }
    return true;
}

} // namespace

void RegisterImageHandlers()
{
    if (!wxImage::FindHandler(wxBITMAP_TYPE_JPEG))
        wxInitAllImageHandlers();
}

DecodedImage DecodeBytes(const void* pBytes, std::size_t nBytes, wxBitmapType type, Orientation orientation)
{
    const LS::Util::FileDescriptor file(::memfd_create("picture", MFD_CLOEXEC));
    if (!file.IsOpen() || !Fill(file.Get(), static_cast<const unsigned char*>(pBytes), nBytes))
        return Failure(DecodeOutcome::Undecodable, LS::Util::SystemError());
    if (type != wxBITMAP_TYPE_ANY && HandlerOf(FormatOf(file.Get())) != type)
        return Failure(DecodeOutcome::Undecodable, "not of the format that was told");
    return DecodeOpenFile(file.Get(), std::chrono::seconds(10), orientation);
}

DecodedImage DecodeImage(const std::string& sPath, std::chrono::milliseconds timeLimit)
{
    std::string sReason;
    if (!LS::Util::IsRegularFile(sPath, sReason))
        return Failure(DecodeOutcome::Missing, sReason);
    const LS::Util::FileDescriptor file(::open(sPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.IsOpen())
        return Failure(DecodeOutcome::Undecodable, LS::Util::SystemError());

    return DecodeOpenFile(file.Get(), timeLimit, OrientationOfFile(sPath));
}
