// What the cache decodes, keeps and drops, and what it tells when it can't.
#include "image/ImageCache.h"

#include "image/ExifThumbnail.h"
#include "image/ImageDecoder.h"
#include "image/RawImage.h"
#include "image/lsImage.h"
#include "tests/image/Pictures.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/TempFolder.h"

#include <LS/Util/Handle>

#include <exiv2/exiv2.hpp>
#include <gmock/gmock.h>

#include <sys/stat.h>

#include <map>

using namespace LS::Tests;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char* UNDECODABLE = "#0001002 Failed to open file. Can not find the file.";

/// Collects the messages to the user as long as it lives.
class Messages {
public:
    Messages()
        : m_previous(ImageCache::SetMessageSink(
              [this](const wxString& text) { m_vsTexts.push_back(text.utf8_string()); }))
    {
    }
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;
    ~Messages() { ImageCache::SetMessageSink(m_previous); }

    const std::vector<std::string>& Texts() const { return m_vsTexts; }

private:
    std::vector<std::string> m_vsTexts;
    ImageCache::MessageSink m_previous;
};

/// Pictures by a name of one letter. Their pixels are never touched, so they take no memory.
const std::map<char, wxSize> SIZES = {
    {'b', {20480, 10240}}, // the whole budget
    {'B', {20480, 10241}}, // more than the budget
    {'h', {10240, 10240}}, // half of it, as the next two
    {'i', {10240, 10240}}, {'j', {10240, 10240}}, {'p', {1, 1}}, {'P', {1, 1}},
};

/// Asks a new cache for one picture after the other. @return those that it decoded for this
std::string DecodedFor(const char* szRequests)
{
    std::string sDecoded;
    ImageCache cache([&](const std::string& sPath) {
        sDecoded += sPath;
        const wxSize size = SIZES.at(sPath[0]);
        return DecodedImage{DecodeOutcome::Decoded, wxImage(size.x, size.y, false), {}};
    });
    for (const char* pName = szRequests; *pName; ++pName) {
        const wxImage* const pImage = cache.GetImage(wxString(*pName), false);
        EXPECT_TRUE(pImage && pImage->GetSize() == SIZES.at(*pName)) << *pName;
    }
    return sDecoded;
}

TEST(ImageCache, DropsWhatWasUsedLongestAgo)
{
    const struct {
        const char* szName;
        const char* szRequests;
        const char* szDecoded;
    } cases[] = {
        {"the second request is served from memory", "ppp", "p"},
        {"names are compared exactly", "pPpP", "pP"},
        {"the budget may be filled, by one", "bb", "b"},
        {"one pixel more drops the oldest, here the one asked for", "hiph", "hiph"},
        {"a request makes a picture young", "hihphp", "hip"},
        {"no more are dropped than needed", "hijji", "hij"},
        {"a picture beyond the budget lasts until the next request", "BB", "BB"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        EXPECT_EQ(c.szDecoded, DecodedFor(c.szRequests));
    }
}

TEST(ImageCache, GivesTheSameImageAgain)
{
    const TempFolder folder;
    const wxImage picture = BlockPicture(64, 32);
    // A surrogate that stands for a byte which is no UTF-8, and text that looks like a format.
    WriteElements(folder.File("\xFF%s%n.png"), Encoded(picture, wxBITMAP_TYPE_PNG));
    const wxString path = folder.WideFile("\xFF%s%n.png");
    ImageCache cache;
    wxImage* const pImage = cache.GetImage(path, false);
    ASSERT_NE(nullptr, pImage);
    EXPECT_TRUE(SamePixels(picture, *pImage));
    EXPECT_EQ(pImage, cache.GetImage(path, false));
}

TEST(ImageCache, TellsWhatCantBeDecoded)
{
    const TempFolder folder;
    WriteText(folder.File("junk.jpg"), "no picture");
    const struct {
        const char* szFile;
        std::string sText;
    } cases[] = {
        {"gone %s.jpg", folder.File("gone %s.jpg") + " Is Not Exist, Please Check!"},
        {"", folder.File("") + " Is Not Exist, Please Check!"}, // the folder itself
        {"junk.jpg", UNDECODABLE},
    };
    ImageCache cache;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szFile);
        const Messages messages;
        const FailureRecorder log;
        EXPECT_EQ(nullptr, cache.GetImage(folder.WideFile(c.szFile), false));
        EXPECT_THAT(messages.Texts(), ElementsAre(c.sText));
        EXPECT_THAT(log.Lines(), ElementsAre(HasSubstr(folder.File(c.szFile))));
    }
}

TEST(ImageCache, ForgetsAPhotographThatWent)
{
    bool bThere = true;
    ImageCache cache([&](const std::string& sPath) {
        if (sPath == "photo" && !bThere)
            return DecodedImage{DecodeOutcome::Missing, wxImage(), "gone"};
        return DecodedImage{DecodeOutcome::Decoded, wxImage(20480, 10241, false), {}};
    });
    EXPECT_NE(nullptr, cache.GetImage("photo", false));
    EXPECT_NE(nullptr, cache.GetImage("large", false)); // drops the photograph at the next request
    const Messages messages;
    const FailureRecorder log;
    for (const bool bBack : {false, true}) {
        bThere = bBack;
        EXPECT_EQ(bBack, cache.GetImage("photo", false) != nullptr);
        EXPECT_EQ(1U, messages.Texts().size());
    }
}

TEST(ImageCache, MessageMayAskAgain)
{
    // As a message box does, whose event loop repaints what asks for pictures.
    const FailureRecorder log;
    bool bBroken = false;
    ImageCache cache([&](const std::string& sPath) {
        if (bBroken && sPath == "a")
            return DecodedImage{DecodeOutcome::Undecodable, wxImage(), "broken"};
        return DecodedImage{DecodeOutcome::Decoded, wxImage(20480, 10241, false), {}};
    });
    cache.GetImage("a", false);
    int nAsked = 0;
    const auto previous = ImageCache::SetMessageSink([&](const wxString&) {
        EXPECT_NE(nullptr, cache.GetImage(wxString::Format("other %d", ++nAsked), false));
    });
    bBroken = true;
    EXPECT_EQ(nullptr, cache.GetImage("a", false));
    EXPECT_EQ(1, nAsked);
    ImageCache::SetMessageSink(previous);
}

TEST(ImageCache, MessagesReachTheLogWhenNobodyListens)
{
    const FailureRecorder log;
    EXPECT_EQ(nullptr, ImageCache().GetImage("/nowhere.jpg", false));
    EXPECT_THAT(log.Lines(), ElementsAre(HasSubstr("/nowhere.jpg: "),
                                         "image cache: /nowhere.jpg Is Not Exist, Please Check!"));
}

TEST(ImageCache, ConvertToRawTellsWhenMemoryLacks)
{
    const Messages messages;
    RawImage raw{};
    EXPECT_FALSE(ImageCache::ConvertToRaw(wxImage(), raw));
    EXPECT_THAT(messages.Texts(), IsEmpty());
    EXPECT_FALSE(ImageCache::ConvertToRaw(PictureWithoutPixels(1 << 20, 1 << 20), raw));
    EXPECT_THAT(messages.Texts(), ElementsAre("#0005005 Fail to allocate memory!"));
    EXPECT_EQ(nullptr, raw.data);
    EXPECT_TRUE(ImageCache::ConvertToRaw(BlockPicture(1, 1), raw));
    const ImageHandlePtr pPixels(raw.data);
}

/// Writes a photograph of 640 x 480 with these bytes as its thumbnail.
void WriteWithThumbnail(const std::string& sPath, const Bytes& thumbnail, std::uint16_t nOrientation = 1)
{
    WriteElements(sPath, Encoded(BlockPicture(640, 480), wxBITMAP_TYPE_JPEG));
    const auto pImage = Exiv2::ImageFactory::open(sPath);
    Exiv2::ExifThumb(pImage->exifData())
        .setJpegThumbnail(thumbnail.data(), static_cast<long>(thumbnail.size()));
    pImage->exifData()["Exif.Image.Orientation"] = nOrientation;
    pImage->writeMetadata();
}

TEST(ImageCacheThumbnail, ComesReducedFromTheExifData)
{
    const TempFolder folder;
    const wxString path = folder.WideFile("photo.jpg");
    WriteWithThumbnail(folder.File("photo.jpg"), Encoded(BlockPicture(320, 240), wxBITMAP_TYPE_JPEG));
    ImageCache cache;
    wxImage* const pThumbnail = cache.GetImage(path, true);
    ASSERT_NE(nullptr, pThumbnail);
    EXPECT_EQ(wxSize(160, 120), pThumbnail->GetSize());
    EXPECT_NEAR(20, pThumbnail->GetRed(12, 4), 6) << "the second colour, up to the format's loss";
    EXPECT_EQ(pThumbnail, cache.GetImage(path, true));

    wxImage* const pImage = cache.GetImage(path, false);
    ASSERT_NE(nullptr, pImage);
    EXPECT_EQ(wxSize(640, 480), pImage->GetSize());
    EXPECT_EQ(pImage, cache.GetImage(path, true)) << "the full image answers once it is there";
}

TEST(ImageCacheThumbnail, StandsAsThePhotographDoes)
{
    const TempFolder folder;
    WriteWithThumbnail(folder.File("photo.jpg"), Encoded(BlockPicture(32, 16), wxBITMAP_TYPE_JPEG), 6);
    ImageCache cache;
    const wxImage* const pThumbnail = cache.GetImage(folder.WideFile("photo.jpg"), true);
    ASSERT_NE(nullptr, pThumbnail);
    EXPECT_EQ(wxSize(16, 32), pThumbnail->GetSize());
    EXPECT_NEAR(200, pThumbnail->GetRed(8, 8), 6) << "the first colour comes first from above";
}

TEST(ImageCacheThumbnail, NullWithoutAUsableOne)
{
    Bytes large = Encoded(BlockPicture(16, 16), wxBITMAP_TYPE_JPEG);
    const std::size_t nSize = Find(large, {0xFF, 0xC0}) + 5; // of the frame header: height, then width
    for (std::size_t i = 0; i < 4; ++i)
        large[nSize + i] = 0xF0;
    const struct {
        const char* szName;
        Bytes thumbnail;
        const char* szReason; // empty: nothing is logged
    } cases[] = {
        {"none", {}, ""},
        {"junk", Bytes(100, 7), "format"},
        {"61680 x 61680 pixels", large, "megapixels"},
    };
    const TempFolder folder;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        WriteWithThumbnail(folder.File("photo.jpg"), c.thumbnail);
        const Messages messages;
        const FailureRecorder log;
        EXPECT_EQ(nullptr, ImageCache().GetImage(folder.WideFile("photo.jpg"), true));
        EXPECT_THAT(messages.Texts(), IsEmpty());
        EXPECT_EQ(*c.szReason ? 1U : 0U, log.Lines().size());
        EXPECT_THAT(log.Lines(), Each(HasSubstr(c.szReason)));
    }
}

TEST(ImageCacheThumbnail, OnlyRegularFilesAreOpened)
{
    const TempFolder folder;
    ASSERT_EQ(0, ::mkfifo(folder.File("pipe").c_str(), 0600));
    WriteText(folder.File("junk"), "no picture");
    for (const wxString path :
         {folder.WideFile("pipe"), folder.WideFile("gone %s"), folder.WideFile("junk"), std::wstring(L"-")}) {
        SCOPED_TRACE(path);
        const FailureRecorder log;
        const LogRecorder errors;
        EXPECT_EQ(nullptr, ImageCache().GetImage(path, true));
        EXPECT_THAT(errors.Lines(), ElementsAre(path.utf8_string() + " ReadThumbnailImage error!"));
        EXPECT_EQ(1U, log.Lines().size());
    }
}

TEST(ImageCacheThumbnail, FitsTheSquare)
{
    const struct {
        wxSize size, expected;
    } cases[] = {
        {{160, 120}, {160, 120}},
        {{100, 400}, {40, 160}},
        {{161, 160}, {160, 159}},
        {{3000, 1}, {160, 1}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.expected, ReducedSize(c.size)) << c.size.x << " x " << c.size.y;
}

TEST(LsImage, TakesItsSizeFromThePixels)
{
    const TempFolder folder;
    WriteElements(folder.File("photo.png"), Encoded(BlockPicture(64, 32), wxBITMAP_TYPE_PNG));
    const LS::Util::Handle<lsImage> row(new lsImage(folder.WideFile("photo.png")));
    EXPECT_EQ(0.016666668F, row->GetExposureTime());
    EXPECT_EQ(14.0F, row->GetFNumber());
    EXPECT_EQ(0.0F, row->GetExposureBias());
    EXPECT_TRUE(row->IsEnabled());

    row->SetWidth(4000); // as a wrong Exif tag has it
    const wxImage* const pImage = row->LoadPixels();
    ASSERT_NE(nullptr, pImage);
    EXPECT_EQ(64, row->GetWidth());
    EXPECT_EQ(32, row->GetHeight());
    EXPECT_EQ(pImage, ImageCache::Instance()->GetImage(row->GetPath(), false));

    const FailureRecorder log;
    const LS::Util::Handle<lsImage> lost(new lsImage(folder.WideFile("lost.png"), 40, 30));
    EXPECT_EQ(nullptr, lost->LoadPixels());
    EXPECT_EQ(40, lost->GetWidth());
    EXPECT_EQ(30, lost->GetHeight());
    ImageCache::DestroyInstance();
}

} // namespace
