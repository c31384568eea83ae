// Decodes in a child process, so that a decoder's crash, hang or greed stays there.
#include "image/DecoderProcess.h"

#include "Util/FailureLog.h"
#include "Util/FileDescriptor.h"
#include "Util/PixelBuffer.h"

#include <wx/debug.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fstream>
#include <optional>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// What the child sends first. Behind it come the reason, or the pixels and then the alpha plane.
struct Answer {
    std::int32_t nWidth = 0; // 0: not decoded
    std::int32_t nHeight = 0;
    std::int32_t nAlpha = 0;   // 1: with an alpha plane
    std::int32_t nMask = -1;   // the mask colour, red in the high byte; or -1
    std::uint32_t nReason = 0; // bytes of text
};

constexpr std::uint32_t LONGEST_REASON = 4096;

/// What any user may ask for. Sixteen times the usual, so that pixels change processes in fewer steps.
constexpr int PIPE_BYTES = 1 << 20;

using LS::Util::PixelBuffer;

/// Null where there is no memory: what a child announces is no reason to fail as a whole.
PixelBuffer AllocatePixels(std::size_t nBytes)
{
    return PixelBuffer(static_cast<unsigned char*>(std::malloc(nBytes)));
}

DecodedImage Undecodable(std::string sReason)
{
    return {DecodeOutcome::Undecodable, wxImage(), std::move(sReason)};
}

// In the child.

/// The greediest of the library's decoders, that of Targa, holds eight bytes a pixel.
constexpr rlim_t MEMORY_ALLOWANCE = 8 * static_cast<rlim_t>(MAX_DECODED_PIXELS) + (rlim_t{256} << 20);

/// The address space that this process has taken, in bytes. What the program had before the fork, and what a
/// sanitizer reserves, is no memory of the decoder's.
rlim_t AddressSpace()
{
    rlim_t nPages = 0;
    std::ifstream("/proc/self/statm") >> nPages;
    return nPages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

void LowerLimit(__rlimit_resource resource, rlim_t nValue)
{
    rlimit limit{};
    ::getrlimit(resource, &limit);
    limit.rlim_cur = limit.rlim_max = std::min(nValue, limit.rlim_max);
    ::setrlimit(resource, &limit);
}

void CloseAllBut(int nFile1, int nFile2)
{
    const auto nLow = static_cast<unsigned>(std::min(nFile1, nFile2));
    const auto nHigh = static_cast<unsigned>(std::max(nFile1, nFile2));
    const auto close = [](unsigned nFirst, unsigned nLast) {
        if (nFirst <= nLast)
            ::close_range(nFirst, nLast, 0);
    };
    close(STDERR_FILENO + 1, nLow - 1);
    close(nLow + 1, nHigh - 1);
    close(nHigh + 1, ~0U);
}

/// Cuts the child off from the program that it was copied from.
void Isolate(int nFile, int nAnswer, milliseconds timeLimit)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);

    // A handler of the program's could open a window. An exit would run the program's own destructors, which
    // delete its files; this one runs before them.
    for (int nSignal = 1; nSignal < NSIG; ++nSignal)
        std::signal(nSignal, SIG_DFL);
    std::atexit([] { ::_exit(EXIT_FAILURE); });
    wxDisableAsserts();

    if (const int nNull = ::open("/dev/null", O_RDWR); nNull >= 0)
        for (const int nStream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            ::dup2(nNull, nStream);
    CloseAllBut(nFile, nAnswer);

    LowerLimit(RLIMIT_CORE, 0);
    LowerLimit(RLIMIT_FSIZE, 0);
    LowerLimit(RLIMIT_CPU,
               static_cast<rlim_t>(std::chrono::ceil<std::chrono::seconds>(timeLimit).count()) + 1);
    LowerLimit(RLIMIT_AS, AddressSpace() + MEMORY_ALLOWANCE);
}

/// Sends bytes to the parent; ends this process if that doesn't work.
void Send(int nAnswer, const void* pData, std::size_t nBytes)
{
    const char* pNext = static_cast<const char*>(pData);
    while (nBytes > 0) {
        const ssize_t nWritten = ::write(nAnswer, pNext, nBytes);
        if (nWritten < 0 && errno != EINTR)
            ::_exit(EXIT_FAILURE);
        if (nWritten > 0) {
            pNext += nWritten;
            nBytes -= static_cast<std::size_t>(nWritten);
        }
    }
}

void SendDecoded(int nAnswer, const wxImage& image)
{
    Answer answer{
        .nWidth = image.GetWidth(), .nHeight = image.GetHeight(), .nAlpha = image.HasAlpha() ? 1 : 0};
    if (image.HasMask())
        answer.nMask = image.GetMaskRed() << 16 | image.GetMaskGreen() << 8 | image.GetMaskBlue();
    Send(nAnswer, &answer, sizeof(answer));

    const std::size_t nPixels =
        static_cast<std::size_t>(answer.nWidth) * static_cast<std::size_t>(answer.nHeight);
    Send(nAnswer, image.GetData(), 3 * nPixels);
    if (answer.nAlpha)
        Send(nAnswer, image.GetAlpha(), nPixels);
}

void SendReason(int nAnswer, const std::string& sReason)
{
    const Answer answer{.nReason = std::min(static_cast<std::uint32_t>(sReason.size()), LONGEST_REASON)};
    Send(nAnswer, &answer, sizeof(answer));
    Send(nAnswer, sReason.data(), answer.nReason);
}

[[noreturn]] void RunChild(const std::function<DecodedImage()>& decode, int nFile, int nAnswer,
                           milliseconds timeLimit)
{
    Isolate(nFile, nAnswer, timeLimit);
    try {
        const DecodedImage decoded = decode();
        if (decoded.outcome == DecodeOutcome::Decoded)
            SendDecoded(nAnswer, decoded.image);
        else
            SendReason(nAnswer, decoded.sReason);
    } catch (const std::exception& fault) {
        SendReason(nAnswer, fault.what());
    } catch (...) {
        SendReason(nAnswer, "the decoder threw something unknown");
    }
    ::_exit(EXIT_SUCCESS);
}

// In the parent.

/// A child process, ended and collected when this goes.
class ChildProcess {
public:
    explicit ChildProcess(pid_t nProcess) : m_nProcess(nProcess) {}
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() { End(); }

    /// Ends it unless it has ended by itself. @return its status as waitpid tells it; 0 if that is unknown
    int End()
    {
        if (m_nProcess <= 0)
            return 0;
        ::kill(m_nProcess, SIGKILL); // leaves the status of a process that has ended as it is
        int nStatus = 0;
        while (::waitpid(m_nProcess, &nStatus, 0) < 0 && errno == EINTR) {
        }
        m_nProcess = 0;
        return nStatus;
    }

private:
    pid_t m_nProcess;
};

/// Reads what the child sends, until a point in time.
class AnswerReader {
public:
    AnswerReader(int nAnswer, milliseconds timeLimit) : m_nAnswer(nAnswer), m_end(Clock::now() + timeLimit) {}

    bool IsLate() const { return Clock::now() >= m_end; }

    /// @return false if the child stopped sending before, or is late
    bool Read(void* pData, std::size_t nBytes)
    {
        char* pNext = static_cast<char*>(pData);
        while (nBytes > 0) {
            if (!WaitForData())
                return false;
            const ssize_t nRead = ::read(m_nAnswer, pNext, nBytes);
            if (nRead == 0 || (nRead < 0 && errno != EINTR))
                return false;
            if (nRead > 0) {
                pNext += nRead;
                nBytes -= static_cast<std::size_t>(nRead);
            }
        }
        return true;
    }

private:
    bool WaitForData() const
    {
        while (!IsLate()) {
            const auto left = std::chrono::ceil<milliseconds>(m_end - Clock::now());
            pollfd wanted{m_nAnswer, POLLIN, 0};
            const int nReady =
                ::poll(&wanted, 1, static_cast<int>(std::max<milliseconds::rep>(left.count(), 0)));
            if (nReady > 0)
                return true;
            if (nReady < 0 && errno != EINTR)
                return false;
        }
        return false;
    }

    int m_nAnswer;
    Clock::time_point m_end;
};

bool MakesSense(const Answer& answer)
{
    if (answer.nReason > LONGEST_REASON || answer.nMask < -1 || answer.nMask > 0xFFFFFF)
        return false;
    if (answer.nWidth == 0)
        return true;
    return answer.nWidth > 0 && answer.nHeight > 0 && (answer.nAlpha == 0 || answer.nAlpha == 1) &&
           std::int64_t{answer.nWidth} * answer.nHeight <= MAX_DECODED_PIXELS;
}

/// The picture that an answer announces; not valid if it doesn't come whole.
wxImage ReceiveImage(AnswerReader& reader, const Answer& answer)
{
    const std::size_t nPixels =
        static_cast<std::size_t>(answer.nWidth) * static_cast<std::size_t>(answer.nHeight);
    PixelBuffer pPixels = AllocatePixels(3 * nPixels);
    PixelBuffer pAlpha = answer.nAlpha ? AllocatePixels(nPixels) : nullptr;
    if (!pPixels || !reader.Read(pPixels.get(), 3 * nPixels))
        return {};
    if (answer.nAlpha && (!pAlpha || !reader.Read(pAlpha.get(), nPixels)))
        return {};

    wxImage image(answer.nWidth, answer.nHeight, pPixels.release());
    if (answer.nAlpha)
        image.SetAlpha(pAlpha.release());
    if (answer.nMask >= 0)
        image.SetMaskColour(static_cast<unsigned char>(answer.nMask >> 16),
                            static_cast<unsigned char>(answer.nMask >> 8 & 0xFF),
                            static_cast<unsigned char>(answer.nMask & 0xFF));
    return image;
}

/// What the child has to say; nothing if it didn't come so far.
std::optional<DecodedImage> Receive(AnswerReader& reader)
{
    Answer answer;
    if (!reader.Read(&answer, sizeof(answer)))
        return std::nullopt;
    if (!MakesSense(answer))
        return Undecodable("the decoder's answer makes no sense");
    if (answer.nWidth == 0) {
        std::string sReason(answer.nReason, '\0');
        if (!reader.Read(sReason.data(), sReason.size()))
            return std::nullopt;
        return Undecodable(std::move(sReason));
    }
    wxImage image = ReceiveImage(reader, answer);
    if (!image.IsOk())
        return std::nullopt;
    return DecodedImage{DecodeOutcome::Decoded, std::move(image), {}};
}

std::string WhyNoAnswer(bool bLate, int nStatus)
{
    if (bLate)
        return "the decoder took too long";
    if (WIFSIGNALED(nStatus) && WTERMSIG(nStatus) != SIGKILL)
        return std::string("the decoder crashed: ") + ::strsignal(WTERMSIG(nStatus));
    return "the decoder ended without an answer";
}

} // namespace

DecodedImage DecodeInChild(const std::function<DecodedImage()>& decode, int nFile, milliseconds timeLimit)
{
    int pipeEnds[2];
    if (::pipe2(pipeEnds, O_CLOEXEC) != 0)
        return Undecodable(LS::Util::SystemError());
    const LS::Util::FileDescriptor readEnd(pipeEnds[0]);
    LS::Util::FileDescriptor writeEnd(pipeEnds[1]);
    ::fcntl(writeEnd.Get(), F_SETPIPE_SZ, PIPE_BYTES); // a refusal costs nothing but time

    const pid_t nProcess = ::fork();
    if (nProcess < 0)
        return Undecodable(LS::Util::SystemError());
    if (nProcess == 0)
        RunChild(decode, nFile, writeEnd.Get(), timeLimit);

    ChildProcess child(nProcess);
    writeEnd.Close(); // so that the child's end ends the reading
    AnswerReader reader(readEnd.Get(), timeLimit);
    if (std::optional<DecodedImage> decoded = Receive(reader))
        return *std::move(decoded);
    const bool bLate = reader.IsLate();
    return Undecodable(WhyNoAnswer(bLate, child.End()));
}
