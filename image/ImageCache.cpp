// Keeps decoded photographs in memory, within a budget.
#include "image/ImageCache.h"

#include "Util/FailureLog.h"
#include "Util/Paths.h"
#include "image/ExifThumbnail.h"
#include "image/ImageDecoder.h"
#include "image/RawConversion.h"

#include <exiv2/exif.hpp>

#include <algorithm>
#include <exception>
#include <utility>

#include <wx/image.h>
#include <wx/log.h>
#include <wx/translation.h>

struct ImageCacheEntry {
    explicit ImageCacheEntry(const wxString& key) : path(key) {}

    wxString path;
    std::unique_ptr<wxImage> image;     ///< at full size; null while not in memory
    std::unique_ptr<wxImage> thumbnail; ///< null while not in memory
    Exiv2::ExifData exif;               ///< of the last thumbnail that was asked for
    std::uint32_t lastUse = 0;          ///< the use counter at the last request of the full image
};

namespace {

constexpr const char* TRACE = "ImageCache";

// At most one picture is decoded between two checks, so the sums of all costs fit their 32 bits.
constexpr std::uint64_t LARGEST_COST = std::uint64_t{MAX_DECODED_PIXELS} * 3;
static_assert(ImageCache::BUDGET + LARGEST_COST <= UINT32_MAX);

std::unique_ptr<ImageCache>& TheInstance()
{
    static std::unique_ptr<ImageCache> pInstance;
    return pInstance;
}

ImageCache::MessageSink& TheSink()
{
    static ImageCache::MessageSink sink;
    return sink;
}

void Tell(const wxString& text)
{
    if (const ImageCache::MessageSink sink = TheSink())
        sink(text);
    else
        LS::Util::LogFailure("image cache", {}, text.utf8_string());
}

std::uint32_t Cost(const std::unique_ptr<wxImage>& pImage)
{
    if (!pImage || !pImage->IsOk())
        return 0;
    return static_cast<std::uint32_t>(pImage->GetWidth()) * static_cast<std::uint32_t>(pImage->GetHeight()) *
           3;
}

std::uint32_t Cost(const ImageCacheEntry& entry)
{
    return Cost(entry.image) + Cost(entry.thumbnail);
}

void TellFailure(const wxString& path, const DecodedImage& decoded)
{
    LS::Util::LogFailure("decoding a photograph", LS::Util::NarrowPath(path.ToStdWstring()), decoded.sReason);
    if (decoded.outcome == DecodeOutcome::Missing)
        Tell(wxString::Format("%s Is Not Exist, Please Check!", path));
    else
        Tell(wxGetTranslation("#0001002 Failed to open file. Can not find the file."));
}

/// Invalid if there is no usable one.
wxImage ReadThumbnailImage(ImageCacheEntry& entry, const wxString& path)
{
    std::string sReason;
    wxImage image;
    try {
        image = ReadExifThumbnail(path, entry.exif, sReason);
    } catch (const std::exception& fault) {
        sReason = fault.what();
        wxLogError("%s ReadThumbnailImage error!", path);
    }
    if (!sReason.empty())
        LS::Util::LogFailure("reading a thumbnail", LS::Util::NarrowPath(path.ToStdWstring()), sReason);
    if (!image.IsOk())
        return image;
    const wxSize size = ReducedSize(image.GetSize());
    return size == image.GetSize() ? image : image.Scale(size.x, size.y);
}

} // namespace

ImageCache* ImageCache::Instance()
{
    if (!TheInstance())
        TheInstance() = std::make_unique<ImageCache>();
    return TheInstance().get();
}

void ImageCache::DestroyInstance()
{
    TheInstance().reset();
}

ImageCache::ImageCache() : ImageCache([](const std::string& sPath) { return DecodeImage(sPath); }) {}

ImageCache::ImageCache(Decoder decode) : m_decode(std::move(decode)) {}

ImageCache::~ImageCache() = default;

ImageCache::MessageSink ImageCache::SetMessageSink(MessageSink sink)
{
    return std::exchange(TheSink(), std::move(sink));
}

wxImage* ImageCache::GetImage(const wxString& path, bool thumbnail)
{
    KeepBudget();
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&](const auto& pEntry) { return pEntry->path.Cmp(path) == 0; });
    if (found != entries.end() && (*found)->image)
        return Use(**found);
    return thumbnail ? Thumbnail(found, path) : FullImage(found, path);
}

wxImage* ImageCache::Thumbnail(Entries::iterator found, const wxString& path)
{
    if (found == entries.end())
        found = entries.insert(found, std::make_unique<ImageCacheEntry>(path));
    ImageCacheEntry& entry = **found;
    if (!entry.thumbnail) {
        const wxImage thumbnail = ReadThumbnailImage(entry, path);
        if (thumbnail.IsOk())
            entry.thumbnail = std::make_unique<wxImage>(thumbnail);
    }
    return entry.thumbnail.get();
}

wxImage* ImageCache::FullImage(Entries::iterator found, const wxString& path)
{
    const DecodedImage decoded = m_decode(LS::Util::NarrowPath(path.ToStdWstring()));
    if (decoded.outcome != DecodeOutcome::Decoded) {
        // Before the message, whose receiver may come back here and move the entries.
        if (found != entries.end())
            entries.erase(found);
        TellFailure(path, decoded);
        return nullptr;
    }
    if (found == entries.end()) {
        found = entries.insert(found, std::make_unique<ImageCacheEntry>(path));
        wxLogTrace(TRACE, "%s has loaded!", path);
    }
    (*found)->image = std::make_unique<wxImage>(decoded.image); // copies of the library share their pixels
    return Use(**found);
}

wxImage* ImageCache::Use(ImageCacheEntry& entry)
{
    entry.lastUse = ++useCounter;
    return entry.image.get();
}

void ImageCache::KeepBudget()
{
    std::sort(entries.begin(), entries.end(),
              [](const auto& pA, const auto& pB) { return pA->lastUse < pB->lastUse; });
    std::uint32_t nTotal = 0;
    for (const auto& pEntry : entries) {
        wxLogTrace(TRACE, "%s!", pEntry->path);
        nTotal += Cost(*pEntry);
    }
    const auto traceTotal = [&nTotal] {
        wxLogTrace(TRACE, "total:%ld MB used: %ld MB", static_cast<long>(BUDGET >> 20),
                   static_cast<long>(nTotal >> 20));
    };

    traceTotal();
    for (auto pEntry = entries.begin(); nTotal > BUDGET; ++pEntry) {
        nTotal -= Cost(**pEntry);
        (*pEntry)->image.reset();
        (*pEntry)->thumbnail.reset();
        wxLogTrace(TRACE, "%s delete!", (*pEntry)->path);
    }
    traceTotal();
}

bool ImageCache::ConvertToRaw(const wxImage& image, RawImage& raw)
{
    switch (::ConvertToRaw(image, raw)) {
    case RawConversion::Converted:
        return true;
    case RawConversion::NoMemory:
        Tell(wxGetTranslation("#0005005 Fail to allocate memory!"));
        return false;
    case RawConversion::Invalid:
        break;
    }
    return false;
}
