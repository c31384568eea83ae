// The bytes of a conversation between two instances: those that the IPC classes of wxWidgets exchange.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The first byte of every message. Connect and Fail are also the answers to Connect.
enum class IpcCode : unsigned char { Execute = 1, Fail = 9, Connect = 10, Disconnect = 11 };

struct IpcMessage {
    IpcCode code = IpcCode::Fail;
    int nFormat = 0;   ///< of the data of Execute: a wxIPCFormat
    std::string sData; ///< the topic of Connect, the data of Execute
};

/// The longest topic and data that are taken. A command-line argument has at most 128 KiB.
constexpr std::size_t MAX_IPC_TOPIC = 1024;
constexpr std::size_t MAX_IPC_DATA = 1 << 20;

std::string EncodeIpcMessage(const IpcMessage& message);

/// Takes messages out of a stream of bytes that arrives in pieces of any size. What a length field announces
/// is never allocated before it is there.
class IpcReader {
public:
    enum class Result { Message, Incomplete, Broken };

    void Append(std::string_view sBytes) { m_sBytes += sBytes; }

    /// The next message. Broken: an unknown code, or a length beyond the limits; there is no way on from it.
    Result Next(IpcMessage& message);

private:
    std::string m_sBytes; // what no message was made of so far
};
