// Exposure values, times and cameras out of photographs, whole and damaged ones.
#include "image/ExifReader.h"

#include "tests/image/Pictures.h"
#include "tests/support/TempFolder.h"

#include <exiv2/exiv2.hpp>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <utility>

using namespace LS::Tests;

static bool operator==(const ExposureValues& a, const ExposureValues& b)
{
    return a.width == b.width && a.height == b.height && a.exposureTime == b.exposureTime &&
           a.fNumber == b.fNumber && a.exposureBias == b.exposureBias;
}

namespace {

using Tags = std::vector<std::pair<const char*, const char*>>;

const Tags ALL_TAGS = {{"Exif.Photo.PixelXDimension", "4000"},
                       {"Exif.Photo.PixelYDimension", "3000"},
                       {"Exif.Photo.ExposureTime", "1/125"},
                       {"Exif.Photo.FNumber", "28/10"},
                       {"Exif.Photo.ExposureBiasValue", "-2/3"}};
const ExposureValues ALL_VALUES = {4000, 3000, 1.0F / 125, 28.0F / 10, -2.0F / 3};

/// All tags with another value for one of them; without it, if the value is null.
Tags With(const char* szKey, const char* szValue)
{
    Tags tags;
    for (const auto& [szName, szText] : ALL_TAGS)
        if (std::string(szName) != szKey)
            tags.emplace_back(szName, szText);
        else if (szValue)
            tags.emplace_back(szName, szValue);
    return tags;
}

void WritePhotograph(const std::string& sPath, const Tags& tags, wxBitmapType type = wxBITMAP_TYPE_JPEG,
                     wxSize size = {16, 16})
{
    const Bytes picture = Encoded(BlockPicture(size.x, size.y), type);
    WriteBytes(sPath, picture.data(), picture.size());
    const auto pImage = Exiv2::ImageFactory::open(sPath);
    for (const auto& [szKey, szValue] : tags)
        pImage->exifData()[szKey] = std::string(szValue);
    pImage->writeMetadata();
}

struct Reading {
    ExifOutcome outcome;
    ExposureValues values;
    std::string sReason;
    std::string sPrinted;
};

Reading Read(const std::string& sPath, const ExposureValues& start = {})
{
    Reading reading{ExifOutcome::Failed, start, "from before", {}};
    testing::internal::CaptureStderr();
    reading.outcome = ReadExif(sPath, reading.values, &reading.sReason);
    reading.sPrinted = testing::internal::GetCapturedStderr();
    return reading;
}

TEST(ExifReader, Values)
{
    const auto all = [](void (*change)(ExposureValues&)) {
        ExposureValues values = ALL_VALUES;
        change(values);
        return values;
    };
    const struct {
        const char* szName;
        Tags tags;
        ExposureValues expected;
    } cases[] = {
        {"all tags", ALL_TAGS, ALL_VALUES},
        {"no width", With("Exif.Photo.PixelXDimension", nullptr), all([](auto& v) { v.width = -1; })},
        {"denominator 0", With("Exif.Photo.ExposureTime", "1/0"), all([](auto& v) { v.exposureTime = 0; })},
        {"several numbers: the first counts", With("Exif.Photo.FNumber", "4/1 8/1"),
         all([](auto& v) { v.fNumber = 4; })},
    };
    const TempFolder folder;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        WritePhotograph(folder.File("photo"), c.tags);
        const Reading reading = Read(folder.File("photo"));
        EXPECT_EQ(ExifOutcome::Read, reading.outcome);
        EXPECT_TRUE(c.expected == reading.values);
        EXPECT_EQ("", reading.sReason);
        EXPECT_EQ("", reading.sPrinted);
    }
}

TEST(ExifReader, SizesAreThoseOfTheUprightPicture)
{
    const TempFolder folder;
    for (const wxBitmapType type : {wxBITMAP_TYPE_JPEG, wxBITMAP_TYPE_TIFF})
        for (const char* szOrientation : {"4", "5", "8", "9"}) {
            SCOPED_TRACE(szOrientation);
            Tags tags = ALL_TAGS;
            tags.emplace_back("Exif.Image.Orientation", szOrientation);
            WritePhotograph(folder.File("photo"), tags, type, {32, 16});
            ShotValues shot;
            ReadShot(folder.File("photo"), shot);
            const bool bOnItsSide = szOrientation[0] >= '5' && szOrientation[0] <= '8';
            for (const ExposureValues& values : {shot.exposure, Read(folder.File("photo")).values}) {
                EXPECT_EQ(bOnItsSide ? 3000 : 4000, values.width);
                EXPECT_EQ(bOnItsSide ? 4000 : 3000, values.height);
            }
            EXPECT_EQ(bOnItsSide ? 16 : 32, shot.width);
            EXPECT_EQ(bOnItsSide ? 32 : 16, shot.height);
        }
}

TEST(ShotReader, TimeCameraAndSize)
{
    using std::chrono::microseconds;
    constexpr microseconds ORIGINAL{1236434703'250'000}, DIGITIZED{1236434710'000'000},
        CHANGED{1236434720'000'000};
    const std::pair<const char*, const char*> original{"Exif.Photo.DateTimeOriginal", "2009:03:07 14:05:03"},
        fraction{"Exif.Photo.SubSecTimeOriginal", "25"},
        digitized{"Exif.Photo.DateTimeDigitized", "2009:03:07 14:05:10"},
        changed{"Exif.Image.DateTime", "2009:03:07 14:05:20"},
        unset{"Exif.Photo.DateTimeOriginal", "0000:00:00 00:00:00"}, make{"Exif.Image.Make", "Maker"},
        model{"Exif.Image.Model", "M1"}, serial{"Exif.Photo.BodySerialNumber", "123"};
    const struct {
        const char* szName;
        Tags tags;
        std::optional<microseconds> taken;
        const char* szCamera;
    } cases[] = {
        {"all", {original, fraction, digitized, changed, make, model, serial}, ORIGINAL, "Maker\nM1\n123\n"},
        {"a fraction of another time", {digitized, fraction}, DIGITIZED, "\n\n\n"},
        {"a clock never set", {unset, fraction, digitized, changed}, DIGITIZED, "\n\n\n"},
        {"changed only", {changed, model}, CHANGED, "\nM1\n\n"},
        {"no time", {make}, std::nullopt, "Maker\n\n\n"},
    };
    const TempFolder folder;
    for (const auto& c : cases) {
        WritePhotograph(folder.File("photo"), c.tags);
        ShotValues shot;
        ASSERT_EQ(ExifOutcome::Read, ReadShot(folder.File("photo"), shot)) << c.szName;
        EXPECT_EQ(c.taken, shot.taken) << c.szName;
        EXPECT_EQ(c.szCamera, shot.sCamera) << c.szName;
    }
}

TEST(ExifReader, TagWithoutValuesKeepsWhatWasReadBefore)
{
    const TempFolder folder;
    WritePhotograph(folder.File("photo"), ALL_TAGS);
    Bytes photo = ReadBytes(folder.File("photo"));
    // FNumber, fraction, one value: in little-endian order
    photo[Find(photo, {0x9D, 0x82, 5, 0, 1, 0, 0, 0}) + 4] = 0;
    WriteElements(folder.File("photo"), photo);

    const Reading reading = Read(folder.File("photo"));
    EXPECT_EQ(ExifOutcome::Failed, reading.outcome);
    const ExposureValues defaults;
    EXPECT_TRUE((ExposureValues{4000, 3000, 1.0F / 125, defaults.fNumber, defaults.exposureBias}) ==
                reading.values);
    EXPECT_NE(std::string::npos, reading.sReason.find("Exif.Photo.FNumber")) << reading.sReason;
}

TEST(ExifReader, OnlyRegularFilesAreOpened)
{
    const TempFolder folder;
    ASSERT_EQ(0, ::mkfifo(folder.File("pipe.jpg").c_str(), 0600));
    for (const std::string& sPath : {folder.File("missing.jpg"), folder.Path(), folder.File("pipe.jpg")}) {
        const Reading reading = Read(sPath);
        EXPECT_EQ(ExifOutcome::Failed, reading.outcome) << sPath;
        EXPECT_NE("", reading.sReason);
        EXPECT_EQ("", reading.sPrinted);
    }
}

TEST(ExifReader, AnyNameIsAFilesName)
{
    // Without an escape the library would ask the standard input and the network for these.
    const TempFolder folder;
    const auto previous = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path());
    std::filesystem::create_directories("http:/localhost:1");
    for (const std::string sName : {"-", "http://localhost:1/a.jpg", "\xFF%s%n.jpg"}) {
        SCOPED_TRACE(sName);
        WritePhotograph("./" + sName, ALL_TAGS);
        EXPECT_TRUE(ALL_VALUES == Read(sName).values);
    }
    std::filesystem::current_path(previous);
}

} // namespace
