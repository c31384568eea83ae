// What the cache decodes, keeps and drops, and what it tells when it can't.
#include "image/ImageCache.h"

#include "image/ExifThumbnail.h"
#include "image/ImageDecoder.h"
#include "image/lsImage.h"
#include "tests/image/Pictures.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/TempFolder.h"

#include <LS/Util/Handle>

#include <exiv2/exiv2.hpp>
#include <gmock/gmock.h>

#include <map>

using namespace LS::Tests;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

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
        const char *szName, *szRequests, *szDecoded;
    } cases[] = {
        {"names are compared exactly", "pPpP", "pP"},
        {"the budget may be filled, by one", "bb", "b"},
        {"one pixel more drops the oldest, here the one asked for", "hiph", "hiph"},
        {"a request makes a picture young", "hihphp", "hip"},
        {"no more are dropped than needed", "hijji", "hij"},
        {"a picture beyond the budget lasts until the next request", "BB", "BB"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.szDecoded, DecodedFor(c.szRequests)) << c.szName;
}

TEST(ImageCache, TellsWhatCantBeDecoded)
{
    const TempFolder folder;
    WriteText(folder.File("junk.jpg"), "no picture");
    for (const auto& [szFile, sText] :
         {std::pair{"gone %s.jpg", folder.File("gone %s.jpg") + " Is Not Exist, Please Check!"},
          {"junk.jpg", "#0001002 Failed to open file. Can not find the file."}}) {
        const Messages messages;
        const FailureRecorder log;
        EXPECT_EQ(nullptr, ImageCache().GetImage(folder.WideFile(szFile), false));
        EXPECT_THAT(messages.Texts(), ElementsAre(sText));
        EXPECT_THAT(log.Lines(), ElementsAre(HasSubstr(folder.File(szFile))));
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

/// Writes a photograph of 640 x 480 with these bytes as its thumbnail.
void WriteWithThumbnail(const std::string& sPath, const Bytes& thumbnail, std::uint16_t nOrientation)
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
    WriteWithThumbnail(folder.File("photo.jpg"), Encoded(BlockPicture(320, 240), wxBITMAP_TYPE_JPEG), 6);
    ImageCache cache;
    wxImage* const pThumbnail = cache.GetImage(path, true);
    ASSERT_NE(nullptr, pThumbnail);
    EXPECT_EQ(wxSize(120, 160), pThumbnail->GetSize()) << "it stands as the photograph does";
    EXPECT_NEAR(20, pThumbnail->GetRed(115, 12), 6) << "the second colour, up to the format's loss";
    EXPECT_EQ(pThumbnail, cache.GetImage(path, true));

    wxImage* const pImage = cache.GetImage(path, false);
    ASSERT_NE(nullptr, pImage);
    EXPECT_EQ(wxSize(480, 640), pImage->GetSize());
    EXPECT_EQ(pImage, cache.GetImage(path, true)) << "the full image answers once it is there";
}

TEST(ImageCacheThumbnail, NullWithoutAUsableOne)
{
    const TempFolder folder;
    for (const std::size_t nBytes : {0U, 100U}) {
        WriteWithThumbnail(folder.File("photo.jpg"), Bytes(nBytes, 7), 1);
        const Messages messages;
        const FailureRecorder log;
        EXPECT_EQ(nullptr, ImageCache().GetImage(folder.WideFile("photo.jpg"), true));
        EXPECT_THAT(messages.Texts(), IsEmpty());
        EXPECT_EQ(nBytes > 0 ? 1U : 0U, log.Lines().size());
    }
    const LogRecorder errors;
    const FailureRecorder log;
    EXPECT_EQ(nullptr, ImageCache().GetImage("gone %s", true));
    EXPECT_THAT(errors.Lines(), ElementsAre("gone %s ReadThumbnailImage error!"));
}

TEST(ImageCacheThumbnail, FitsTheSquare)
{
    EXPECT_EQ(wxSize(40, 160), ReducedSize({100, 400}));
    EXPECT_EQ(wxSize(160, 159), ReducedSize({161, 160}));
    EXPECT_EQ(wxSize(160, 1), ReducedSize({3000, 1}));
}

TEST(LsImage, TakesItsSizeFromThePixels)
{
    const TempFolder folder;
    WriteElements(folder.File("photo.png"), Encoded(BlockPicture(64, 32), wxBITMAP_TYPE_PNG));
    const LS::Util::Handle<lsImage> row(new lsImage(folder.WideFile("photo.png")));
    row->SetWidth(4000); // as a wrong Exif tag has it
    const wxImage* const pImage = row->LoadPixels();
    ASSERT_NE(nullptr, pImage);
    EXPECT_EQ(64, row->GetWidth());
    EXPECT_EQ(32, row->GetHeight());
    EXPECT_EQ(pImage, ImageCache::Instance()->GetImage(row->GetPath(), false));
    ImageCache::DestroyInstance();
}

} // namespace
