// Encodes in memory, then replaces the file at one blow: the image library's handlers ignore failed writes.
#include "image/LdrSave.h"

#include "Util/FailureLog.h"
#include "Util/ReplacedFile.h"
#include "image/RawConversion.h"
#include "image/tiff.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <vector>

#include <wx/imagbmp.h>
#include <wx/image.h>
#include <wx/imagjpeg.h>
#include <wx/imagpng.h>
#include <wx/imagtga.h>
#include <wx/stream.h>

using LS::Util::ReplacedFile;

namespace {

constexpr int LIBRARY_QUALITY = 100; // asks for the quality that the library takes without an option

/// Collects what an encoder writes.
class EncodedStream : public wxOutputStream {
public:
    const std::vector<unsigned char>& Encoded() const { return m_vBytes; }
    bool IsWhole() const { return m_bWhole; }

protected:
    size_t OnSysWrite(const void* pData, size_t nBytes) override;

private:
    std::vector<unsigned char> m_vBytes;
    bool m_bWhole = true;
};

/// Nothing may be thrown through the encoders, which are C; and they don't look at the result.
size_t EncodedStream::OnSysWrite(const void* pData, size_t nBytes)
try {
    const auto* const pBytes = static_cast<const unsigned char*>(pData);
    m_vBytes.insert(m_vBytes.end(), pBytes, pBytes + nBytes);
    return nBytes;
} catch (const std::bad_alloc&) {
    m_bWhole = false;
    m_lasterror = wxSTREAM_WRITE_ERROR;
    return 0;
}

std::unique_ptr<wxImageHandler> HandlerFor(LdrFormat format)
{
    switch (format) {
    case LdrFormat::Jpeg:
        return std::make_unique<wxJPEGHandler>();
    case LdrFormat::Png:
        return std::make_unique<wxPNGHandler>();
    case LdrFormat::Bmp:
        return std::make_unique<wxBMPHandler>();
    case LdrFormat::Targa:
        return std::make_unique<wxTGAHandler>();
    case LdrFormat::Tiff:
        break;
    }
    return nullptr;
}

/// The encoders of these two formats cut sizes to the width of the header's fields without a word; those of
/// the other two refuse.
bool HeaderHolds(const wxImage& image, LdrFormat format)
{
    if (format == LdrFormat::Targa) {
        const int nLargest = std::numeric_limits<std::uint16_t>::max();
        return image.GetWidth() <= nLargest && image.GetHeight() <= nLargest;
    }
    if (format == LdrFormat::Bmp) {
        constexpr std::int64_t nHeaders = 54;
        const std::int64_t nRow = (std::int64_t{image.GetWidth()} * 3 + 3) / 4 * 4;
        return nRow * image.GetHeight() + nHeaders <= std::numeric_limits<std::uint32_t>::max();
    }
    return true;
}

/// What came of one save: an outcome other than Saved has a reason.
struct Result {
    LdrOutcome outcome = LdrOutcome::Saved;
    std::string sReason;
};

Result Failure(const std::string& sReason)
{
    return {LdrOutcome::Failed, sReason};
}

Result WriteTiff(const wxImage& image, const ReplacedFile& file, const LdrOptions& options)
{
    RawImage raw;
    if (ConvertToRaw(image, raw) == RawConversion::NoMemory)
        return {LdrOutcome::OutOfMemory, "no memory for the pixels"};
    const ImageHandlePtr pPixels(raw.data);
    std::string sReason;
    if (WriteLdrTiff(raw, file.Path().c_str(), options.nCompression, options.bSixteenBit, &sReason) != 1)
        return Failure(sReason);
    return {};
}

Result WriteEncoded(wxImage& image, ReplacedFile& file, LdrFormat format, const LdrOptions& options)
{
    if (!HeaderHolds(image, format))
        return Failure("the picture is too large for the format");
    if (format == LdrFormat::Jpeg && options.nQuality != LIBRARY_QUALITY)
        image.SetOption(wxIMAGE_OPTION_QUALITY, options.nQuality);

    EncodedStream encoded;
    if (!HandlerFor(format)->SaveFile(&image, encoded, false))
        return Failure("the picture could not be encoded");
    if (!encoded.IsWhole())
        return Failure("no memory for the encoded picture");
    return file.Write(encoded.Encoded().data(), encoded.Encoded().size()) ? Result{} : Failure(file.Reason());
}

Result Write(wxImage& image, ReplacedFile& file, LdrFormat format, const LdrOptions& options)
{
    if (!image.IsOk())
        return Failure("there is no picture");
    if (!file.IsOpen())
        return Failure(file.Reason());
    return format == LdrFormat::Tiff ? WriteTiff(image, file, options)
                                     : WriteEncoded(image, file, format, options);
}

/// Logs what becomes of a save, whatever it throws.
template <typename Save> LdrOutcome Logged(const std::string& sPath, Save save)
{
    Result result;
    try {
        result = save();
    } catch (const std::exception& e) {
        result = {LdrOutcome::Exception, e.what()};
    } catch (...) {
        result = {LdrOutcome::Exception, "an unknown exception"};
    }
    if (result.outcome != LdrOutcome::Saved)
        LS::Util::LogFailure("save", sPath, result.sReason);
    return result.outcome;
}

} // namespace

LdrOutcome WriteLdr(wxImage& image, ReplacedFile& file, LdrFormat format, const LdrOptions& options)
{
    return Logged(file.Path(), [&] { return Write(image, file, format, options); });
}

LdrOutcome SaveLdr(wxImage& image, const std::string& sPath, LdrFormat format, const LdrOptions& options)
{
    return Logged(sPath, [&] {
        ReplacedFile file(sPath);
        Result result = Write(image, file, format, options);
        if (result.outcome != LdrOutcome::Saved || file.Commit())
            return result;
        return Failure(file.Reason());
    });
}
