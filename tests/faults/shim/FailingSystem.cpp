// Goes between a program and its C library: lets the n-th system call or allocation of one kind fail.
//
// A test that links this library gives its orders by tests/faults/shim/FailingSystem.h. Preloaded into
// another program it takes them from the environment and counts from main on.
//
// LS_FAULT_CALL names the kind, LS_FAULT_NTH the first call that fails, and with
// LS_FAULT_LASTING all later ones fail as well. LS_FAULT_MARK is the path of a file that appears when the
// first failure happens.
#include "tests/faults/shim/FailingSystem.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

// The C library's own allocator, which needs no search for the next function of a name.
extern "C" void* __libc_malloc(std::size_t);              // NOLINT(bugprone-reserved-identifier)
extern "C" void* __libc_calloc(std::size_t, std::size_t); // NOLINT(bugprone-reserved-identifier)
extern "C" void* __libc_realloc(void*, std::size_t);      // NOLINT(bugprone-reserved-identifier)

namespace {

enum class Kind { None, Write, Read, Close, Sync, Rename, Allocate };

/// Read once before main, so that a call costs no more than a comparison.
Kind g_kind = Kind::None;
long g_nFirst = 0;
bool g_bLasting = false;
const char* g_szMark = nullptr;
const char* g_szFrom = nullptr;
Kind g_kindFrom = Kind::None; // in force once g_szFrom has been met
std::atomic<long> g_nCalls = 0;

Kind KindOf(const char* szName)
{
    constexpr struct {
        const char* szName;
        Kind kind;
    } KINDS[] = {
        {"write", Kind::Write}, {"read", Kind::Read},     {"close", Kind::Close},
        {"fsync", Kind::Sync},  {"rename", Kind::Rename}, {"malloc", Kind::Allocate},
    };
    for (const auto& known : KINDS)
        if (szName && std::strcmp(szName, known.szName) == 0)
            return known.kind;
    return Kind::None;
}

void LeaveMark()
{
    if (g_szMark)
        ::syscall(SYS_close, ::syscall(SYS_openat, AT_FDCWD, g_szMark, O_CREAT | O_WRONLY, 0600));
}

/// Counts a call. @return whether it is to fail; errno is set then
bool Fails(Kind kind, int nError)
{
    if (kind != g_kind)
        return false;
    const long nCall = ++g_nCalls;
    if (nCall < g_nFirst || (nCall > g_nFirst && !g_bLasting))
        return false;
    if (nCall == g_nFirst)
        LeaveMark();
    errno = nError;
    return true;
}

template <typename Function> Function* CLibrary(const char* szName)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, szName));
}

void ReadOrders()
{
    const char* const szFirst = std::getenv("LS_FAULT_NTH");
    g_nFirst = szFirst ? std::strtol(szFirst, nullptr, 10) : 1;
    g_bLasting = std::getenv("LS_FAULT_LASTING") != nullptr;
    g_szMark = std::getenv("LS_FAULT_MARK");
    g_szFrom = std::getenv("LS_FAULT_FROM");
    g_kindFrom = KindOf(std::getenv("LS_FAULT_CALL"));
    if (!g_szFrom)
        g_kind = g_kindFrom; // last: from here on calls count
}

using Main = int (*)(int, char**, char**);
Main g_main = nullptr;

int MainWithFaults(int nArguments, char** szArguments, char** szEnvironment)
{
    ReadOrders();
    return g_main(nArguments, szArguments, szEnvironment);
}

} // namespace

void LetCallsFail(const char* szKind, long nFirst, bool bLasting)
{
    g_nCalls = 0;
    g_nFirst = nFirst;
    g_bLasting = bLasting;
    g_kind = KindOf(szKind);
}

bool EndFailing()
{
    g_kind = Kind::None;
    return g_nCalls >= g_nFirst;
}

extern "C" {

int __libc_start_main(Main main, int nArguments, char** szArguments, // NOLINT(bugprone-reserved-identifier)
                      void (*init)(), void (*fini)(), void (*linkerFini)(), void* pStackEnd)
{
    g_main = main;
    using Function = int(Main, int, char**, void (*)(), void (*)(), void (*)(), void*);
    return CLibrary<Function>("__libc_start_main")(MainWithFaults, nArguments, szArguments, init, fini,
                                                   linkerFini, pStackEnd);
}

int stat(const char* szPath, struct stat* pStatus) noexcept
{
    if (g_szFrom && std::strcmp(szPath, g_szFrom) == 0)
        g_kind = g_kindFrom;
    return static_cast<int>(::syscall(SYS_newfstatat, AT_FDCWD, szPath, pStatus, 0));
}

ssize_t write(int nFile, const void* pData, std::size_t nBytes)
{
    return Fails(Kind::Write, ENOSPC) ? -1 : ::syscall(SYS_write, nFile, pData, nBytes);
}

ssize_t pwrite64(int nFile, const void* pData, std::size_t nBytes, off64_t nOffset)
{
    return Fails(Kind::Write, ENOSPC) ? -1 : ::syscall(SYS_pwrite64, nFile, pData, nBytes, nOffset);
}

ssize_t writev(int nFile, const iovec* pParts, int nParts)
{
    return Fails(Kind::Write, ENOSPC) ? -1 : ::syscall(SYS_writev, nFile, pParts, nParts);
}

ssize_t read(int nFile, void* pData, std::size_t nBytes)
{
    return Fails(Kind::Read, EIO) ? -1 : ::syscall(SYS_read, nFile, pData, nBytes);
}

ssize_t pread64(int nFile, void* pData, std::size_t nBytes, off64_t nOffset)
{
    return Fails(Kind::Read, EIO) ? -1 : ::syscall(SYS_pread64, nFile, pData, nBytes, nOffset);
}

ssize_t pread(int nFile, void* pData, std::size_t nBytes, off_t nOffset)
{
    return pread64(nFile, pData, nBytes, nOffset);
}

/// The stream's own writes are calls within the C library, where nothing can be put in between.
std::size_t fwrite(const void* pData, std::size_t nSize, std::size_t nCount, FILE* pFile)
{
    if (Fails(Kind::Write, ENOSPC)) {
        pFile->_flags |= _IO_ERR_SEEN;
        return 0;
    }
    return CLibrary<std::size_t(const void*, std::size_t, std::size_t, FILE*)>("fwrite")(pData, nSize, nCount,
                                                                                         pFile);
}

int close(int nFile)
{
    const bool bFails = Fails(Kind::Close, EIO);
    const int nError = errno;
    const long nResult = ::syscall(SYS_close, nFile); // a failed close frees the descriptor as well
    if (!bFails)
        return static_cast<int>(nResult);
    errno = nError;
    return -1;
}

int fclose(FILE* pFile)
{
    const bool bFails = Fails(Kind::Close, EIO);
    const int nError = errno;
    const int nResult = CLibrary<int(FILE*)>("fclose")(pFile);
    if (!bFails)
        return nResult;
    errno = nError;
    return EOF;
}

int fsync(int nFile)
{
    return Fails(Kind::Sync, EIO) ? -1 : static_cast<int>(::syscall(SYS_fsync, nFile));
}

int rename(const char* szFrom, const char* szTo) noexcept
{
    return Fails(Kind::Rename, EIO)
               ? -1
               : static_cast<int>(::syscall(SYS_renameat2, AT_FDCWD, szFrom, AT_FDCWD, szTo, 0));
}

int renameat2(int nFrom, const char* szFrom, int nTo, const char* szTo, unsigned nFlags) noexcept
{
    if (Fails(Kind::Rename, EIO))
        return -1;
    return static_cast<int>(::syscall(SYS_renameat2, nFrom, szFrom, nTo, szTo, nFlags));
}

void* malloc(std::size_t nBytes)
{
    return Fails(Kind::Allocate, ENOMEM) ? nullptr : __libc_malloc(nBytes);
}

void* calloc(std::size_t nCount, std::size_t nSize)
{
    return Fails(Kind::Allocate, ENOMEM) ? nullptr : __libc_calloc(nCount, nSize);
}

void* realloc(void* pOld, std::size_t nBytes)
{
    return Fails(Kind::Allocate, ENOMEM) ? nullptr : __libc_realloc(pOld, nBytes);
}

} // extern "C"
