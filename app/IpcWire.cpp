// Encoding: a code byte; for Execute a format byte; for Connect and Execute a length, 32 bits little-endian,
// and that many bytes.
#include "app/IpcWire.h"

#include <cstdint>

namespace {

constexpr std::size_t LENGTH_BYTES = 4;

std::size_t HeadBytes(IpcCode code)
{
    switch (code) {
    case IpcCode::Execute:
        return 2 + LENGTH_BYTES;
    case IpcCode::Connect:
        return 1 + LENGTH_BYTES;
    default:
        return 1;
    }
}

bool IsRequest(unsigned char code)
{
    const auto known = static_cast<IpcCode>(code);
    return known == IpcCode::Execute || known == IpcCode::Connect || known == IpcCode::Disconnect;
}

std::uint32_t ReadLength(std::string_view sBytes)
{
    std::uint32_t nLength = 0;
    for (std::size_t n = 0; n < LENGTH_BYTES; ++n)
        nLength |= static_cast<std::uint32_t>(static_cast<unsigned char>(sBytes[n])) << (8 * n);
    return nLength;
}

} // namespace

std::string EncodeIpcMessage(const IpcMessage& message)
{
    std::string sBytes(1, static_cast<char>(message.code));
    if (message.code == IpcCode::Execute)
        sBytes += static_cast<char>(message.nFormat);
    if (HeadBytes(message.code) > 1) {
        const auto nLength = static_cast<std::uint32_t>(message.sData.size());
        for (std::size_t n = 0; n < LENGTH_BYTES; ++n)
            sBytes += static_cast<char>(nLength >> (8 * n));
        sBytes += message.sData;
    }
    return sBytes;
}

IpcReader::Result IpcReader::Next(IpcMessage& message)
{
    if (m_sBytes.empty())
        return Result::Incomplete;
    const auto nCode = static_cast<unsigned char>(m_sBytes[0]);
    if (!IsRequest(nCode))
        return Result::Broken;
    const auto code = static_cast<IpcCode>(nCode);
    const std::size_t nHead = HeadBytes(code);
    if (m_sBytes.size() < nHead)
        return Result::Incomplete;

    std::size_t nLength = 0;
    if (nHead > 1) {
        nLength = ReadLength(std::string_view(m_sBytes).substr(nHead - LENGTH_BYTES));
        if (nLength > (code == IpcCode::Connect ? MAX_IPC_TOPIC : MAX_IPC_DATA))
            return Result::Broken;
        if (m_sBytes.size() - nHead < nLength)
            return Result::Incomplete;
    }
    message.code = code;
    message.nFormat = code == IpcCode::Execute ? static_cast<unsigned char>(m_sBytes[1]) : 0;
    message.sData = m_sBytes.substr(nHead, nLength);
    m_sBytes.erase(0, nHead + nLength);
    return Result::Message;
}
