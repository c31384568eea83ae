// Writes a float cache file as an OpenEXR picture through the library's RGBA interface.
#include "HDRFile/OpenExr.h"

#include "HDRFile/FloatCacheReader.h"
#include "HDRFile/HalfRow.h"
#include "HDRFile/PictureStream.h"
#include "Util/FailureLog.h"

#include <ImathBox.h>
#include <ImfHeader.h>
#include <ImfIO.h>
#include <ImfRgbaFile.h>
#include <ImfThreading.h>

#include <sys/types.h>

#include <cerrno>
#include <clocale>
#include <cstddef>
#include <cstdio>
#include <span>
#include <system_error>
#include <vector>

namespace {

std::int32_t g_nLastPercent = -1;

/// Takes the library's output and keeps the first error. The library's destructor writes the table of line
/// offsets and drops every exception on the way, so only the stream knows whether the file is whole.
class CheckedStream : public Imf::OStream {
public:
    /// @param pFile  stays the caller's   @param szName  for the library's own messages
    CheckedStream(FILE* pFile, const char* szName) : Imf::OStream(szName), m_pFile(pFile) {}

    void write(const char c[], int n) override
    {
        const auto nBytes = static_cast<std::size_t>(n);
        Check(std::fwrite(c, 1, nBytes, m_pFile) == nBytes);
    }

    std::uint64_t tellp() override
    {
        const off_t nPosition = ftello(m_pFile);
        Check(nPosition >= 0);
        return static_cast<std::uint64_t>(nPosition);
    }

    void seekp(std::uint64_t pos) override { Check(fseeko(m_pFile, static_cast<off_t>(pos), SEEK_SET) == 0); }

    /// The system's number of the first error, or 0.
    int Error() const { return m_nError; }

private:
    void Check(bool bDone)
    {
        if (bDone)
            return;
        if (m_nError == 0)
            m_nError = errno != 0 ? errno : EIO;
        throw std::system_error(m_nError, std::generic_category());
    }

    FILE* m_pFile;
    int m_nError = 0;
};

/// The user's locale, but for numbers: those of the whole program keep their point.
void SetUserLocale()
{
    std::setlocale(LC_ALL, "");
    std::setlocale(LC_NUMERIC, "C");
}

Imf::Header PictureHeader(std::int32_t nWidth, std::int32_t nHeight)
{
    const Imath::Box2i window(Imath::V2i(0, 0), Imath::V2i(nWidth - 1, nHeight - 1));
    constexpr float PIXEL_ASPECT_RATIO = 1.0F;
    constexpr float SCREEN_WINDOW_WIDTH = 1.0F;
    return {window,
            window,
            PIXEL_ASPECT_RATIO,
            Imath::V2f(0.0F, 0.0F),
            SCREEN_WINDOW_WIDTH,
            Imf::INCREASING_Y,
            Imf::PIZ_COMPRESSION};
}

/// Where pixel (0, 0) would lie if row y of a whole picture lay at pRow. The library adds the row's offset
/// again before it reads. Outside the row no pointer may be computed, so this is done in integers.
const Imf::Rgba* PictureBase(const Imf::Rgba* pRow, std::int32_t y, std::size_t nWidth)
{
    const std::uintptr_t nOffset = static_cast<std::uintptr_t>(y) * nWidth * sizeof(Imf::Rgba);
    return reinterpret_cast<const Imf::Rgba*>(reinterpret_cast<std::uintptr_t>(pRow) - nOffset);
}

/// Writes header and rows; false for a failure of the source. The output throws.
bool WritePicture(CheckedStream& stream, const char* HDRDataFile, std::int32_t nWidth, std::int32_t nHeight,
                  ProgbarSetter* pProgress)
{
    Imf::RgbaOutputFile file(stream, PictureHeader(nWidth, nHeight), Imf::WRITE_RGBA,
                             Imf::globalThreadCount());
    std::vector<Imf::Rgba> rgbaRow(static_cast<std::size_t>(nWidth));
    static_assert(sizeof(Imf::Rgba) == 4 * sizeof(std::uint16_t));
    const std::span nHalves(reinterpret_cast<std::uint16_t*>(rgbaRow.data()), 4 * rgbaRow.size());
    const auto writeRow = [&](std::int32_t y, std::span<const float> fRow) {
        HalfRow(fRow, nHalves);
        file.setFrameBuffer(PictureBase(rgbaRow.data(), y, rgbaRow.size()), 1, rgbaRow.size());
        file.writePixels(1);
        return true;
    };
    if (!StreamRows(HDRDataFile, nWidth, nHeight, pProgress, g_nLastPercent, writeRow))
        return false;
    Report(pProgress, 100);
    return true;
}

/// Whether the file holds all rows. The library loses, without a word, those that it finds no memory to
/// encode.
bool IsComplete(const char* fileName)
{
    const auto check = [fileName] {
        if (Imf::RgbaInputFile(fileName).isComplete())
            return true;
        LS::Util::LogFailure("save", fileName, "rows are missing");
        return false;
    };
    return CatchAndLog(fileName, check);
}

} // namespace

bool WriteOpenExrFile(const char* HDRDataFile, const char* fileName, std::int32_t nWidth,
                      std::int32_t nHeight, ProgbarSetter* pProgress)
{
    if (!CheckWriterArguments(HDRDataFile, fileName, nWidth, nHeight))
        return false;
    SetUserLocale();
    PictureStream picture(fileName);
    if (!picture.IsOpen())
        return false;
    CheckedStream stream(picture.File(), fileName);
    const auto save = [&] { return WritePicture(stream, HDRDataFile, nWidth, nHeight, pProgress); };
    if (!CatchAndLog(fileName, save))
        return false;
    // The library is gone, and with it the last chance to write.
    if (stream.Error()) {
        LS::Util::LogFailure("save", fileName, LS::Util::SystemError(stream.Error()));
        return false;
    }
    return picture.Close() && IsComplete(fileName);
}
