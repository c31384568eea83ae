// Rows of the float cache file on their way into a picture file.
#include "HDRFile/FloatCacheReader.h"

#include "HDRFile/ScaleRow.h"
#include "Util/FailureLog.h"

#include <fcntl.h>

#include <bit>
#include <exception>

// The cache file's floats are little-endian and are used as they come.
static_assert(std::endian::native == std::endian::little);

bool CheckWriterArguments(const char* HDRDataFile, const char* fileName, std::int32_t nWidth,
                          std::int32_t nHeight)
{
    if (HDRDataFile && fileName && nWidth > 0 && nHeight > 0)
        return true;
    LS::Util::LogFailure("save", fileName ? fileName : "", "there is no picture to write");
    return false;
}

FloatCacheReader::FloatCacheReader(const char* szPath, std::int32_t nWidth)
    : m_file("save", szPath, O_RDONLY), m_nRowFloats(3 * static_cast<std::size_t>(nWidth))
{
}

bool FloatCacheReader::ReadRow()
{
    const std::size_t nRowBytes = m_nRowFloats * sizeof(float);
    // Tested before the row is allocated: a width that the file belies must not claim the memory for it.
    if (!m_file.Holds(m_nOffset + nRowBytes))
        return false;
    m_vfRow.resize(m_nRowFloats);
    if (!m_file.Read(m_nOffset, m_vfRow.data(), nRowBytes))
        return false;
    m_nOffset += nRowBytes;
    ScaleRow(m_vfRow);
    return true;
}

bool StreamRows(const char* HDRDataFile, std::int32_t nWidth, std::int32_t nHeight, ProgbarSetter* pProgress,
                std::int32_t& nLast,
                const std::function<bool(std::int32_t y, std::span<const float> fRow)>& writeRow)
{
    FloatCacheReader source(HDRDataFile, nWidth);
    if (!source.IsOpen())
        return false;
    for (std::int32_t y = 0; y < nHeight; ++y) {
        if (!source.ReadRow() || !writeRow(y, source.Row()))
            return false;
        const std::int32_t nPercent = RowPercent(y, nHeight);
        if (pProgress && nPercent != nLast) {
            nLast = nPercent;
            pProgress->SetPercent(nPercent);
        }
    }
    return true;
}

bool CatchAndLog(const char* fileName, const std::function<bool()>& save)
{
    try {
        return save();
    } catch (const std::exception& e) {
        LS::Util::LogFailure("save", fileName, e.what());
        return false;
    }
}
