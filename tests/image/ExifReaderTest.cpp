// Exposure values, times and cameras out of photographs, whole and damaged ones.
#include "image/ExifReader.h"

#include "tests/image/Pictures.h"
#include "tests/support/TempFolder.h"

#include <exiv2/exiv2.hpp>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <ostream>
#include <utility>

using LS::Tests::Bytes;
using LS::Tests::TempFolder;

// For the messages of failed tests.
static std::ostream& operator<<(std::ostream& out, const ExposureValues& v)
{
    return out << v.width << " x " << v.height << ", " << v.exposureTime << " s, f/" << v.fNumber << ", "
               << v.exposureBias << " EV";
}

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

Tags Without(std::size_t nLeftOut)
{
    Tags tags = ALL_TAGS;
    tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(nLeftOut));
    return tags;
}

Tags With(const char* szKey, const char* szValue)
{
    Tags tags = ALL_TAGS;
    for (auto& [szName, szText] : tags)
        if (std::string(szName) == szKey)
            szText = szValue;
    return tags;
}

void WritePhotograph(const std::string& sPath, const Tags& tags, wxBitmapType type = wxBITMAP_TYPE_JPEG,
                     wxSize size = {16, 16})
{
    const Bytes picture = LS::Tests::Encoded(LS::Tests::BlockPicture(size.x, size.y), type);
    LS::Tests::WriteBytes(sPath, picture.data(), picture.size());
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
    const ExposureValues all = ALL_VALUES;
    const struct {
        const char* szName;
        Tags tags;
        ExposureValues expected;
    } cases[] = {
        {"all tags", ALL_TAGS, all},
        {"no width", Without(0), {-1, all.height, all.exposureTime, all.fNumber, all.exposureBias}},
        {"no height", Without(1), {all.width, -1, all.exposureTime, all.fNumber, all.exposureBias}},
        {"no shutter time", Without(2), {all.width, all.height, -1.0F, all.fNumber, all.exposureBias}},
        {"no aperture", Without(3), {all.width, all.height, all.exposureTime, -1.0F, all.exposureBias}},
        {"no compensation", Without(4), {all.width, all.height, all.exposureTime, all.fNumber, -1.0F}},
        {"other tags only", {{"Exif.Image.Make", "Camera"}}, {-1, -1, -1.0F, -1.0F, -1.0F}},
        {"denominator 0",
         With("Exif.Photo.ExposureTime", "1/0"),
         {all.width, all.height, 0.0F, all.fNumber, all.exposureBias}},
        {"0/0 for infinity",
         With("Exif.Photo.FNumber", "0/0"),
         {all.width, all.height, all.exposureTime, 0.0F, all.exposureBias}},
        {"largest fraction",
         With("Exif.Photo.ExposureTime", "4294967295/1"),
         {all.width, all.height, 4294967296.0F, all.fNumber, all.exposureBias}},
        {"several numbers: the first counts",
         With("Exif.Photo.FNumber", "4/1 8/1"),
         {all.width, all.height, all.exposureTime, 4.0F, all.exposureBias}},
    };
    const TempFolder folder;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        WritePhotograph(folder.File("photo"), c.tags);
        const Reading reading = Read(folder.File("photo"));
        EXPECT_EQ(ExifOutcome::Read, reading.outcome);
        EXPECT_EQ(c.expected, reading.values);
        EXPECT_EQ("", reading.sReason);
        EXPECT_EQ("", reading.sPrinted);
    }
}

TEST(ExifReader, ReadsTiffAsWell)
{
    const TempFolder folder;
    WritePhotograph(folder.File("photo.jpg"), ALL_TAGS, wxBITMAP_TYPE_TIFF);
    EXPECT_EQ(ALL_VALUES, Read(folder.File("photo.jpg")).values);
}

TEST(ExifReader, SizesAreThoseOfTheUprightPicture)
{
    const TempFolder folder;
    for (const wxBitmapType type : {wxBITMAP_TYPE_JPEG, wxBITMAP_TYPE_TIFF})
        for (const char* szOrientation : {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}) {
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
    for (const wxBitmapType type : {wxBITMAP_TYPE_JPEG, wxBITMAP_TYPE_TIFF})
        for (const auto& c : cases) {
            SCOPED_TRACE(c.szName);
            WritePhotograph(folder.File("photo"), c.tags, type);
            ShotValues shot;
            std::string sReason;
            ASSERT_EQ(ExifOutcome::Read, ReadShot(folder.File("photo"), shot, &sReason)) << sReason;
            EXPECT_EQ(c.taken, shot.taken);
            EXPECT_EQ(c.szCamera, shot.sCamera);
            EXPECT_EQ(16, shot.width);
            EXPECT_EQ(16, shot.height);
        }
    ShotValues shot;
    shot.width = 7;
    EXPECT_EQ(ExifOutcome::Failed, ReadShot(folder.File("missing"), shot));
    EXPECT_EQ(0, shot.width);
}

TEST(ExifReader, NoExifChangesNothing)
{
    const ExposureValues start = {7, 5, 0.25F, 2.0F, 1.0F};
    const TempFolder folder;
    for (const wxBitmapType type : {wxBITMAP_TYPE_JPEG, wxBITMAP_TYPE_PNG, wxBITMAP_TYPE_BMP}) {
        SCOPED_TRACE(type);
        const Bytes picture = LS::Tests::Encoded(LS::Tests::BlockPicture(16, 16), type);
        LS::Tests::WriteElements(folder.File("photo"), picture);
        const Reading reading = Read(folder.File("photo"), start);
        EXPECT_EQ(ExifOutcome::NoExif, reading.outcome);
        EXPECT_EQ(start, reading.values);
        EXPECT_EQ("", reading.sReason);
    }
}

TEST(ExifReader, TagWithoutValuesKeepsWhatWasReadBefore)
{
    const TempFolder folder;
    WritePhotograph(folder.File("photo"), ALL_TAGS);
    Bytes photo = LS::Tests::ReadBytes(folder.File("photo"));
    // FNumber, fraction, one value: in little-endian order
    photo[LS::Tests::Find(photo, {0x9D, 0x82, 5, 0, 1, 0, 0, 0}) + 4] = 0;
    LS::Tests::WriteElements(folder.File("photo"), photo);

    const Reading reading = Read(folder.File("photo"));
    EXPECT_EQ(ExifOutcome::Failed, reading.outcome);
    const ExposureValues defaults;
    EXPECT_EQ((ExposureValues{4000, 3000, 1.0F / 125, defaults.fNumber, defaults.exposureBias}),
              reading.values);
    EXPECT_NE(std::string::npos, reading.sReason.find("Exif.Photo.FNumber")) << reading.sReason;
}

TEST(ExifReader, OnlyRegularFilesAreOpened)
{
    const TempFolder folder;
    const std::string sPipe = folder.File("pipe.jpg");
    ASSERT_EQ(0, ::mkfifo(sPipe.c_str(), 0600));
    std::filesystem::create_symlink(folder.File("nowhere"), folder.File("dangling.jpg"));
    for (const std::string& sPath :
         {folder.File("missing.jpg"), folder.Path(), sPipe, folder.File("dangling.jpg"), std::string("-"),
          std::string(), std::string("http://localhost:1/a.jpg"), std::string("file:///etc/hostname"),
          std::string("/dev/zero")}) {
        SCOPED_TRACE(sPath);
        const Reading reading = Read(sPath);
        EXPECT_EQ(ExifOutcome::Failed, reading.outcome);
        EXPECT_EQ(ExposureValues{}, reading.values);
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
    std::filesystem::create_directory("file:");
    for (const std::string sName : {"-", "http://localhost:1/a.jpg", "file://a.jpg", "\xC3\xA9t\xC3\xA9.jpg",
                                    "\xFF\xE9.jpg", "%s%n.jpg"}) {
        SCOPED_TRACE(sName);
        WritePhotograph("./" + sName, ALL_TAGS);
        EXPECT_EQ(ALL_VALUES, Read(sName).values);
    }
    std::filesystem::current_path(previous);
}

/// Each value is the photograph's, the default or -1; what isn't read changes nothing.
void ExpectSound(const Reading& reading)
{
    EXPECT_EQ("", reading.sPrinted);
    if (reading.outcome == ExifOutcome::NoExif) {
        EXPECT_EQ(ExposureValues{}, reading.values);
    }
    if (reading.outcome == ExifOutcome::Failed) {
        EXPECT_NE("", reading.sReason);
    }
}

TEST(ExifReader, SurvivesEveryCut)
{
    const TempFolder folder;
    WritePhotograph(folder.File("photo"), ALL_TAGS);
    const Bytes photo = LS::Tests::ReadBytes(folder.File("photo"));
    const std::size_t nExifEnd = LS::Tests::Find(photo, {0xFF, 0xDB}); // the tables follow the Exif data
    int nRead = 0;
    for (std::size_t nLength = 0; nLength <= nExifEnd + 4; ++nLength) {
        SCOPED_TRACE(nLength);
        LS::Tests::WriteBytes(folder.File("cut"), photo.data(), nLength);
        const Reading reading = Read(folder.File("cut"));
        ExpectSound(reading);
        if (reading.outcome == ExifOutcome::Read) {
            ++nRead;
            EXPECT_EQ(ALL_VALUES, reading.values);
            EXPECT_GE(nLength, nExifEnd - 2);
        }
    }
    EXPECT_GT(nRead, 0);
}

TEST(ExifReader, SurvivesEveryDamagedByte)
{
    const TempFolder folder;
    WritePhotograph(folder.File("photo"), ALL_TAGS);
    const Bytes photo = LS::Tests::ReadBytes(folder.File("photo"));
    const std::size_t nExifEnd = LS::Tests::Find(photo, {0xFF, 0xDB});
    for (std::size_t i = 0; i < nExifEnd; ++i)
        for (const int nValue : {0x00, 0x7F, 0xFF}) {
            SCOPED_TRACE(testing::Message() << "byte " << i << " = " << nValue);
            Bytes damaged = photo;
            damaged[i] = static_cast<unsigned char>(nValue);
            LS::Tests::WriteElements(folder.File("damaged"), damaged);
            ExpectSound(Read(folder.File("damaged")));
            ShotValues shot;
            ReadShot(folder.File("damaged"), shot);
        }
}

} // namespace
