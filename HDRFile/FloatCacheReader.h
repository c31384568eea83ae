// What the three writers share: their arguments, the rows of the float cache file, and their progress.
#pragma once

#include "Util/RegularFile.h"
#include "engine/ProgbarSetter.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

/// Whether there is a picture to write: two paths and a size of at least 1 x 1. Anything else is logged.
bool CheckWriterArguments(const char* HDRDataFile, const char* fileName, std::int32_t nWidth,
                          std::int32_t nHeight);

/// Reads the headerless float cache file from its first row to its last.
class FloatCacheReader {
public:
    /// @param szPath  in the file system's bytes   @param nWidth  pixels, above 0
    FloatCacheReader(const char* szPath, std::int32_t nWidth);

    /// False if the file couldn't be opened; that is logged.
    bool IsOpen() const { return m_file.IsOpen(); }

    /// Reads the next row and scales it: each float times 0.001, rounded to 32 bits.
    /// @return false if the file is too short or can't be read; that is logged
    bool ReadRow();

    /// The latest row: nWidth x 3 floats, interleaved R, G, B.
    std::span<const float> Row() const { return m_vfRow; }

private:
    LS::Util::RegularFile m_file;
    std::size_t m_nRowFloats;
    std::size_t m_nOffset = 0; // of the next row
    std::vector<float> m_vfRow;
};

/// The part of a save that all writers have in common. Reads the rows from first to last, hands each over and
/// reports it unless this writer has just reported the same percentage.
/// @param nLast     the writer's latest report; starts at -1 and outlives a single save
/// @param writeRow  gets y and the row; false, told by itself, ends the save
/// @return false if a row couldn't be read, which is logged, or written
bool StreamRows(const char* HDRDataFile, std::int32_t nWidth, std::int32_t nHeight, ProgbarSetter* pProgress,
                std::int32_t& nLast,
                const std::function<bool(std::int32_t y, std::span<const float> fRow)>& writeRow);

/// Runs a save, at the border to a library that throws. @return its result; false, logged, if it threw
bool CatchAndLog(const char* fileName, const std::function<bool()>& save);
