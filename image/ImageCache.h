// Keeps decoded photographs in memory, within a budget.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <wx/string.h>

class wxImage;
struct DecodedImage;
struct ImageCacheEntry;
struct RawImage;

/// The decoded source photographs, by path, so that none is decoded again as long as there is room for it.
///
/// Each request first drops the pictures used longest ago until the rest takes at most BUDGET bytes; then it
/// decodes what it needs. So the memory in use may pass the budget by the one picture decoded last. A path
/// once met stays known without its pixels. For the main thread only.
class ImageCache {
public:
    /// What the pictures may take at 3 bytes a pixel; masks and alpha planes don't count.
    static constexpr std::uint32_t BUDGET = 600U << 20;

    using Decoder = std::function<DecodedImage(const std::string& sPath)>;

    /// The program's one cache; the first call makes it.
    static ImageCache* Instance();

    /// Deletes it with its pictures; nothing if there is none.
    static void DestroyInstance();

    ImageCache(); ///< decodes with DecodeImage
    /// @param decode  gives the pictures of paths in the file system's bytes
    explicit ImageCache(Decoder decode);
    ImageCache(const ImageCache&) = delete;
    ImageCache& operator=(const ImageCache&) = delete;
    virtual ~ImageCache();

    /// A photograph, from memory or decoded now.
    ///
    /// The image stays the cache's and is valid until the next call only, which may drop it. A photograph
    /// that can't be decoded is told to the message sink, with the reason in the log, and forgotten.
    /// @param path       compared exactly: another spelling of one file is another photograph
    /// @param thumbnail  asks for the thumbnail from the Exif data, of at most 160 x 160 pixels. The full
    ///                   photograph comes all the same if it is in memory
    /// @return null if the file can't be decoded, or has no usable thumbnail
    wxImage* GetImage(const wxString& path, bool thumbnail);

    /// Fills a record with 32-bit pixels A R G B, A = 255. The record's earlier pixels aren't freed.
    /// @return false for an invalid image, which leaves the record as it was, and where memory lacks, which
    ///         is told to the message sink and leaves the record empty
    static bool ConvertToRaw(const wxImage& image, RawImage& raw);

    /// Receives what the user must read, in the user's language.
    using MessageSink = std::function<void(const wxString& text)>;

    /// Replaces the receiver of messages of this process; an empty one means the failure log, as at the
    /// start. It may run an event loop and ask the cache again.
    /// @return the receiver that was in force
    static MessageSink SetMessageSink(MessageSink sink);

private:
    using Entries = std::vector<std::unique_ptr<ImageCacheEntry>>;

    void KeepBudget();
    wxImage* Thumbnail(Entries::iterator found, const wxString& path);
    wxImage* FullImage(Entries::iterator found, const wxString& path);
    wxImage* Use(ImageCacheEntry& entry);

    Entries entries; ///< every path met, in the order of the last sort
    std::uint32_t useCounter = 0;
    Decoder m_decode;
};
