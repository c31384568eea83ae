// A resource limit for the length of a scope: full disks and few descriptors without a special machine.
#pragma once

#include <csignal>
#include <stdexcept>
#include <sys/resource.h>

namespace LS::Tests {

/// Lowers a soft limit of this process. A file that would grow beyond RLIMIT_FSIZE fails with EFBIG.
class ResourceLimit {
public:
    ResourceLimit(__rlimit_resource nResource, rlim_t nLimit) : m_nResource(nResource)
    {
        std::signal(SIGXFSZ, SIG_IGN); // else the process would end instead of the write failing
        if (getrlimit(nResource, &m_previous) != 0)
            throw std::runtime_error("getrlimit");
        const rlimit lowered{nLimit, m_previous.rlim_max};
        if (setrlimit(nResource, &lowered) != 0)
            throw std::runtime_error("setrlimit");
    }
    ResourceLimit(const ResourceLimit&) = delete;
    ResourceLimit& operator=(const ResourceLimit&) = delete;
    ~ResourceLimit() { setrlimit(m_nResource, &m_previous); }

private:
    __rlimit_resource m_nResource;
    rlimit m_previous{};
};

} // namespace LS::Tests
