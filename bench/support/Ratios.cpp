// Rounds of measurement and the rows that show them.
#include "bench/support/Ratios.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <sys/resource.h>

namespace LS::Bench {

namespace {

double Milliseconds(const timeval& time)
{
    return 1e3 * static_cast<double>(time.tv_sec) + 1e-3 * static_cast<double>(time.tv_usec);
}

/// CPU time so far, in milliseconds.
double CpuTime()
{
    double dTime = 0;
    for (const auto who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(who, &usage);
        dTime += Milliseconds(usage.ru_utime) + Milliseconds(usage.ru_stime);
    }
    return dTime;
}

double Measure(const RatioTable::Work& work)
{
    const double dStart = CpuTime();
    work();
    return CpuTime() - dStart;
}

double Median(std::vector<double> vdValues)
{
    const auto middle = vdValues.begin() + static_cast<std::ptrdiff_t>(vdValues.size() / 2);
    std::nth_element(vdValues.begin(), middle, vdValues.end());
    return *middle;
}

std::string Text(const char* szFormat, double dValue)
{
    char acText[40];
    std::snprintf(acText, sizeof acText, szFormat, dValue);
    return acText;
}

void PrintRow(const std::string& sWhat, const std::string& sMeasured, const std::string& sTarget,
              const std::string& sMet, const std::string& sCpu)
{
    std::printf("| %-64s | %8s | %8s | %-3s | %-16s |\n", sWhat.c_str(), sMeasured.c_str(), sTarget.c_str(),
                sMet.c_str(), sCpu.c_str());
    std::fflush(stdout);
}

} // namespace

RatioTable::RatioTable(int argc, char** argv)
{
    bool bHeading = true;
    for (int i = 1; i < argc; ++i) {
        const std::string_view sOption = argv[i];
        if (sOption == "--once")
            m_nRounds = 1;
        else if (sOption == "--rows-only")
            bHeading = false;
        else if (sOption == "--only" && i + 1 < argc)
            m_sOnly = argv[++i];
        else {
            std::fprintf(stderr, "Usage: %s [--once] [--rows-only] [--only TEXT]\n", argv[0]);
            std::exit(2);
        }
    }
    if (!bHeading)
        return;
    PrintRow("What", "Measured", "Target", "Met", "CPU ms");
    PrintRow(std::string(64, '-'), "-------:", "-------:", "---", std::string(16, '-'));
}

void RatioTable::Ratio(const std::string& sWhat, double dTarget, const Work& candidate, const Work& reference)
{
    if (!Wants(sWhat))
        return;
    std::vector<double> vdCandidate, vdReference, vdRatios;
    for (int i = 0; i < m_nRounds; ++i) {
        // Who goes first changes, since the second finds a warmer processor.
        if (i % 2 == 0)
            vdCandidate.push_back(Measure(candidate));
        vdReference.push_back(Measure(reference));
        if (i % 2 != 0)
            vdCandidate.push_back(Measure(candidate));
        vdRatios.push_back(vdCandidate.back() / vdReference.back());
    }
    const double dRatio = Median(vdRatios);
    PrintRow(sWhat, Text("%.3f x", dRatio), Text("%.2f x", dTarget), dRatio <= dTarget ? "yes" : "no",
             Text("%.1f", Median(vdCandidate)) + " / " + Text("%.1f", Median(vdReference)));
}

void RatioTable::Time(const std::string& sWhat, double dTargetMs, const Work& candidate)
{
    if (!Wants(sWhat))
        return;
    std::vector<double> vdTimes;
    vdTimes.reserve(static_cast<std::size_t>(m_nRounds));
    for (int i = 0; i < m_nRounds; ++i)
        vdTimes.push_back(Measure(candidate));
    const double dTime = Median(vdTimes);
    PrintRow(sWhat, Text("%.1f ms", dTime), Text("%.0f ms", dTargetMs), dTime <= dTargetMs ? "yes" : "no",
             Text("%.1f", dTime));
}

void RatioTable::Amount(const std::string& sWhat, const std::string& sUnit, double dTarget,
                        const std::function<double()>& measure)
{
    if (!Wants(sWhat))
        return;
    std::vector<double> vdAmounts;
    vdAmounts.reserve(static_cast<std::size_t>(m_nRounds));
    for (int i = 0; i < m_nRounds; ++i)
        vdAmounts.push_back(measure());
    const double dAmount = Median(vdAmounts);
    PrintRow(sWhat, Text("%.0f ", dAmount) + sUnit, Text("%.0f ", dTarget) + sUnit,
             dAmount <= dTarget ? "yes" : "no", "");
}

void RatioTable::Missing(const std::string& sWhat, const std::string& sReason)
{
    if (Wants(sWhat))
        PrintRow(sWhat, "-", "-", "-", sReason);
}

bool RatioTable::Wants(const std::string& sWhat) const
{
    return sWhat.find(m_sOnly) != std::string::npos;
}

int PrintRows(int argc, char** argv, const std::function<void(RatioTable& table)>& measure)
{
    try {
        RatioTable table(argc, argv);
        measure(table);
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s: %s\n", argv[0], e.what());
        return 1;
    }
}

void Require(bool bDone, const char* szOtherwise)
{
    if (!bDone)
        throw std::runtime_error(szOtherwise);
}

} // namespace LS::Bench
