// One line per silent failure, to whatever log the program keeps.
#include "Util/FailureLog.h"

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

namespace LS::Util {

namespace {

FailureSink& CurrentSink()
{
    static FailureSink sink;
    return sink;
}

} // namespace

FailureSink SetFailureSink(FailureSink sink)
{
    return std::exchange(CurrentSink(), std::move(sink));
}

void LogFailure(std::string_view sStep, std::string_view sFile, std::string_view sReason)
{
    std::string sLine(sStep);
    for (const std::string_view sPart : {sFile, sReason})
        if (!sPart.empty())
            sLine.append(": ").append(sPart);

    if (const FailureSink& sink = CurrentSink())
        sink(sLine);
    else
        std::fprintf(stderr, "%s\n", sLine.c_str());
}

std::string SystemError(int nError)
{
    return nError == 0 ? "no reason given by the system" : std::generic_category().message(nError);
}

std::string SystemError()
{
    return SystemError(errno);
}

} // namespace LS::Util
