// Rows of the float cache file on their way into a picture file.
#include "HDRFile/FloatCacheReader.h"

#include "Util/FailureLog.h"

#include <cerrno>
#include <string>

namespace {

constexpr double FILE_UNITS = 0.001; // of the merge's units

} // namespace

FloatCacheReader::FloatCacheReader(const char* szPath, std::int32_t nWidth)
    : m_sPath(szPath), m_stream(szPath, std::ios::binary), m_bOpen(m_stream),
      m_vfRow(3 * static_cast<std::size_t>(nWidth))
{
    if (!m_bOpen)
        LS::Util::LogFailure("save", m_sPath, LS::Util::SystemError());
}

bool FloatCacheReader::ReadRow()
{
    errno = 0;
    m_stream.read(reinterpret_cast<char*>(m_vfRow.data()),
                  static_cast<std::streamsize>(m_vfRow.size() * sizeof(float)));
    if (!m_stream) {
        LS::Util::LogFailure("save", m_sPath,
                             errno ? LS::Util::SystemError() : "the float cache file is too short");
        return false;
    }
    for (float& fValue : m_vfRow)
        fValue = static_cast<float>(fValue * FILE_UNITS);
    return true;
}

void ReportRow(ProgbarSetter* pProgress, std::int32_t y, std::int32_t nHeight, std::int32_t& nLast)
{
    if (!pProgress)
        return;
    const std::int32_t nPercent = RowPercent(y, nHeight);
    if (nPercent == nLast)
        return;
    nLast = nPercent;
    pProgress->SetPercent(nPercent);
}
