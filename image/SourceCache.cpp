// Source cache files: decoded photographs in the form in which the engine streams them.
#include "image/SourceCache.h"

#include "Util/Assertion.h"
#include "Util/FailureLog.h"
#include "Util/RegularFile.h"
#include "image/PackRow.h"

#include <wx/image.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

constexpr std::size_t BYTES_PER_PIXEL = 4;

struct FileCloser {
    void operator()(std::FILE* pFile) const noexcept { std::fclose(pFile); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

enum class Writing { Done, Failed, Stopped };

Writing WriteRows(const wxImage& image, std::FILE* pFile, const std::function<bool(std::int32_t y)>& rowDone)
{
    const auto nWidth = static_cast<std::size_t>(image.GetWidth());
    const unsigned char* pRGB = image.GetData();
    const unsigned char* pAlpha = image.HasAlpha() ? image.GetAlpha() : nullptr;
    std::vector<unsigned char> row(BYTES_PER_PIXEL * nWidth);
    for (std::int32_t y = 0; y < image.GetHeight(); ++y) {
        const std::size_t nOffset = static_cast<std::size_t>(y) * nWidth;
        PackRow(pRGB + 3 * nOffset, pAlpha ? pAlpha + nOffset : nullptr, row);
        if (std::fwrite(row.data(), 1, row.size(), pFile) != row.size())
            return Writing::Failed;
        if (rowDone && !rowDone(y))
            return Writing::Stopped;
    }
    return Writing::Done;
}

/// Creates or empties a regular file; null, which is logged, where the path leads to anything else.
File Create(const std::string& sPath)
{
    LS::Util::RegularFile regular("convert", sPath, O_WRONLY | O_CREAT | O_TRUNC, LS::Util::OWNER_ONLY);
    if (!regular.IsOpen())
        return nullptr;
    File file(::fdopen(regular.Descriptor(), "wb"));
    if (file)
        regular.Release();
    else
        LS::Util::LogFailure("convert", sPath, LS::Util::SystemError());
    return file;
}

/// Why a closed file isn't whole; empty if it is.
std::string SizeFault(const std::string& sPath, std::size_t nBytes)
{
    struct stat status {};
    if (::stat(sPath.c_str(), &status) != 0)
        return LS::Util::SystemError();
    if (static_cast<std::size_t>(status.st_size) != nBytes)
        return std::to_string(status.st_size) + " bytes instead of " + std::to_string(nBytes);
    return {};
}

bool Abandon(const std::string& sPath, const std::string& sReason)
{
    std::remove(sPath.c_str());
    LS::Util::LogFailure("convert", sPath, sReason);
    return false;
}

} // namespace

bool WriteSourceCacheFile(const wxImage& image, const std::string& sPath,
                          const std::function<bool(std::int32_t y)>& rowDone)
{
    LS_ASSERT(image.IsOk());
    File file = Create(sPath);
    if (!file)
        return false;

    switch (WriteRows(image, file.get(), rowDone)) {
    case Writing::Failed:
        return Abandon(sPath, LS::Util::SystemError());
    case Writing::Stopped:
        std::remove(sPath.c_str());
        return false;
    case Writing::Done:
        break;
    }
    if (std::fclose(file.release()) != 0)
        return Abandon(sPath, LS::Util::SystemError());

    const std::size_t nPixels =
        static_cast<std::size_t>(image.GetWidth()) * static_cast<std::size_t>(image.GetHeight());
    const std::string sFault = SizeFault(sPath, BYTES_PER_PIXEL * nPixels);
    return sFault.empty() || Abandon(sPath, sFault);
}

namespace ConversionPercent {

namespace {

/// Where the share of image i begins.
double Start(std::int32_t i, std::int32_t nCount)
{
    return static_cast<double>(i) * 100 / nCount;
}

} // namespace

std::int32_t Skipped(std::int32_t i, std::int32_t nCount)
{
    return static_cast<std::int32_t>((i + 1.0) * 100 / nCount);
}

std::int32_t Decoded(std::int32_t i, std::int32_t nCount)
{
    return static_cast<std::int32_t>(Start(i, nCount) + 5.0);
}

std::int32_t Row(std::int32_t i, std::int32_t nCount, std::int32_t y, std::int32_t nHeight)
{
    const std::int64_t nWholePercents = std::int64_t{y} * 100 / nHeight;
    const auto nDone = static_cast<double>(nWholePercents);
    return static_cast<std::int32_t>(
        Start(i, nCount) + 5.5 + (nDone + 0.5) * ((i + 1.0) * 100 / nCount - Start(i, nCount) - 5.0) / 100.0);
}

} // namespace ConversionPercent
