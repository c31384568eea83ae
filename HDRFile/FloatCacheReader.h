// What the three writers share: rows of the float cache file in the files' units, and their progress.
#pragma once

#include "engine/ProgbarSetter.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <span>
#include <vector>

/// Reads the headerless float cache file from its first row to its last.
class FloatCacheReader {
public:
    /// @param szPath  in the file system's bytes   @param nWidth  pixels, above 0
    FloatCacheReader(const char* szPath, std::int32_t nWidth);

    /// False if the file couldn't be opened; that is logged.
    bool IsOpen() const { return m_bOpen; }

    /// Reads the next row and scales it: each float times 0.001, rounded to 32 bits.
    /// @return false if the file is too short; that is logged
    bool ReadRow();

    /// The latest row: nWidth x 3 floats, interleaved R, G, B. The writer may change it.
    std::span<float> Row() { return m_vfRow; }

private:
    std::string m_sPath;
    std::ifstream m_stream;
    bool m_bOpen;
    std::vector<float> m_vfRow;
};

/// Reports row y of nHeight unless this writer has just reported the same percentage.
/// @param nLast  the writer's latest report; starts at -1 and outlives a single save
void ReportRow(ProgbarSetter* pProgress, std::int32_t y, std::int32_t nHeight, std::int32_t& nLast);
