// Statistics, range and choice of samples.
#include "engine/CHDRConstruct.h"
#include "engine/RecoveryTables.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <limits>
#include <random>
#include <string>
#include <utility>

using LS::Tests::Bytes;
using LS::Tests::FailureRecorder;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

/// The object under test with its state in reach.
class Probe : public CHDRConstruct {
public:
    Probe() : CHDRConstruct(0, 0) {}
    using CHDRConstruct::dBiweightEnergy;
    using CHDRConstruct::nHigh;
    using CHDRConstruct::nLow;
    using CHDRConstruct::nSamples;
    using CHDRConstruct::pfInformation;
    using CHDRConstruct::vpImages;

    /// Adds a grey image, or one of three planes. Each call gets a longer shutter time than the one before.
    void Add(std::int32_t nColumns, std::vector<Bytes> vPlanes)
    {
        if (vPlanes.size() == 1)
            vPlanes.resize(3, vPlanes.front());
        const std::size_t nPixels = vPlanes[0].size();
        const auto nRows = static_cast<std::int32_t>(nPixels) / nColumns;
        const auto fShutter = static_cast<float>(vpImages.size() + 1);
        AddImage(std::make_unique<LDRImage>(std::move(vPlanes), nColumns, nRows, fShutter, 8.0F, 3.0F, 0.0F));
        pfInformation.assign(nPixels, 0.0F);
    }

    /// Images of one pixel, where only their number matters.
    void AddCount(int nImages)
    {
        for (int i = 0; i < nImages; ++i)
            Add(1, {Bytes{128}});
    }

    std::vector<SampleRecord> Collect(std::int32_t nChannel, bool* pbCollected = nullptr)
    {
        std::vector<SampleRecord> vRecords(vpImages.size() * 256);
        nLow = 0;
        nHigh = 255;
        const bool bCollected = CollectStatistics(vRecords, nChannel, nullptr);
        if (pbCollected)
            *pbCollected = bCollected;
        return vRecords;
    }
};

std::unique_ptr<LDRImage> Grey(std::int32_t nWidth, std::int32_t nHeight, float fShutter, float fStop = 8.0F,
                               float fGain = 3.0F, float fND = 0.0F)
{
    const Bytes plane(static_cast<std::size_t>(nWidth * nHeight), 128);
    return std::make_unique<LDRImage>(std::vector<LDRImage::Plane>(3, plane), nWidth, nHeight, fShutter,
                                      fStop, fGain, fND);
}

SampleRecord Record(std::initializer_list<float> values, float fWeight = 1.0F)
{
    SampleRecord record;
    record.pfValues = std::make_unique<float[]>(values.size());
    std::copy(values.begin(), values.end(), record.pfValues.get());
    record.fWeight = fWeight;
    return record;
}

template <typename Call> std::string ExceptionText(Call call)
{
    try {
        call();
    } catch (const std::exception& e) {
        return e.what();
    }
    return "none";
}

TEST(LDRImage, LogExposure)
{
    // log(512 t / N^2) + gain / 3 - ND
    EXPECT_FLOAT_EQ(static_cast<float>(std::log(512.0 / 60 / 64) + 1), Grey(1, 1, 1 / 60.0F)->fLogExposure);
    EXPECT_FLOAT_EQ(static_cast<float>(std::log(512.0) + 2 - 0.5),
                    Grey(1, 1, 1.0F, 1.0F, 6.0F, 0.5F)->fLogExposure);
    for (const float fBadShutter : {0.0F, -1.0F, std::nanf(""), std::numeric_limits<float>::infinity()})
        EXPECT_FALSE(std::isfinite(Grey(1, 1, fBadShutter)->fLogExposure)) << fBadShutter;
}

TEST(CHDRConstruct, ImagesAreSortedAndCounted)
{
    Probe construct;
    EXPECT_NEAR(103.619, construct.dBiweightEnergy, 0.0005);
    const std::array<int, 9> nSamples = {256, 256, 256, 256, 204, 168, 144, 128, 112};
    const std::array<float, 9> fShutters = {4, 1, 16, 2, 8, 0.25F, 32, 0.5F, 64};
    for (std::size_t i = 0; i < fShutters.size(); ++i) {
        construct.AddImage(Grey(2, 3, fShutters[i]));
        EXPECT_EQ(nSamples[i], construct.nSamples) << i + 1;
    }
    std::vector<float> vfSorted;
    for (const auto& pImage : construct.vpImages)
        vfSorted.push_back(pImage->fShutter);
    EXPECT_THAT(vfSorted, ElementsAre(0.25F, 0.5F, 1, 2, 4, 8, 16, 32, 64));
}

TEST(CHDRConstruct, RefusedImages)
{
    const std::string sSize = "The width or height of LDRImage is not equal to the ones of CHDRConstruct!";
    struct {
        const char* name;
        std::unique_ptr<LDRImage> pImage;
        std::string sText;
    } cases[] = {
        {"null", nullptr, "LDRImage is Null!"},
        {"another width", Grey(3, 2, 1), sSize},
        {"another height", Grey(2, 3, 1), sSize},
        {"no exposure", Grey(2, 2, 0), "the exposure is not finite"},
        {"not a number", Grey(2, 2, -1), "the exposure is not finite"},
    };
    Probe construct;
    construct.AddImage(Grey(2, 2, 1));
    for (auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.sText, ExceptionText([&] { construct.AddImage(std::move(c.pImage)); }));
        EXPECT_EQ(1U, construct.vpImages.size());
    }
}

TEST(CHDRConstruct, FewerThanTwoImagesOrTooMany)
{
    for (const int nImages : {0, 1, 257}) {
        FailureRecorder failures;
        Probe construct;
        construct.AddCount(nImages);
        EXPECT_FALSE(construct.Construct(nullptr));
        EXPECT_THAT(failures.Lines(), ElementsAre(HasSubstr(nImages < 2 ? "fewer than two" : "at most 256")));
    }
}

TEST(SlopeWeight, NeighboursOfAnImage)
{
    const struct {
        std::vector<float> vfValues;
        std::vector<double> vdWeights;
    } cases[] = {
        {{10, 61}, {51 / 255.0, 51 / 255.0}},
        {{0, 51, 204}, {51 / 255.0, 102 / 255.0, 153 / 255.0}},
        {{200, 100}, {0, 0}},      // falls
        {{90, 90, 90}, {0, 0, 0}}, // doesn't rise
        {{0, 255, 0}, {1, 0, 0}},
    };
    for (const auto& c : cases) {
        Probe construct;
        construct.AddCount(static_cast<int>(c.vfValues.size()));
        for (std::size_t i = 0; i < c.vfValues.size(); ++i)
            EXPECT_FLOAT_EQ(static_cast<float>(c.vdWeights[i]),
                            construct.SlopeWeight(static_cast<std::int32_t>(i), c.vfValues.data()));
    }
    Probe alone;
    alone.AddCount(1);
    const float fValue = 100;
    EXPECT_EQ(0.0F, alone.SlopeWeight(0, &fValue));
}

TEST(AdjustValueRange, MovesInwardWhileTheCountsKeepUp)
{
    const struct {
        const char* name;
        std::int32_t nLow, nHigh;
        std::vector<std::pair<std::size_t, int>> counts; // value, count
        std::int32_t nNewLow, nNewHigh;
    } cases[] = {
        {"empty all around", 0, 255, {{0, 10}, {255, 10}}, 0, 255},
        {"all equal, the bar stays below", 0, 200, std::vector<std::pair<std::size_t, int>>(0), 9, 191},
        {"just the bar of 0.6", 10, 110, {{10, 10}, {11, 6}, {110, 10}, {109, 6}}, 11, 109},
        {"just below it", 10, 110, {{10, 10}, {11, 5}, {110, 10}, {109, 5}}, 10, 110},
        {"the step at 5 % is out of reach", 10, 110, {{10, 10}, {15, 99}, {110, 10}, {105, 99}}, 10, 110},
        {"the step before it isn't", 10, 110, {{10, 10}, {14, 99}, {110, 10}, {106, 99}}, 14, 106},
        {"the bar refers to the best so far", 10, 110, {{10, 10}, {11, 20}, {12, 13}, {110, 1}}, 11, 110},
        {"no range", 80, 80, {{80, 1}, {81, 9}, {79, 9}}, 80, 80},
        {"upside down", 90, 80, {{80, 1}, {90, 1}}, 90, 80},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<std::int32_t> vnHistogram(256, c.counts.empty() ? 7 : 0);
        for (const auto& [nValue, nCount] : c.counts)
            vnHistogram[nValue] = nCount;
        Probe construct;
        construct.nLow = c.nLow;
        construct.nHigh = c.nHigh;
        construct.AdjustValueRange(vnHistogram);
        EXPECT_EQ(c.nNewLow, construct.nLow);
        EXPECT_EQ(c.nNewHigh, construct.nHigh);
    }
}

TEST(PixelInformation, NeighbourhoodOnTheFlatPlane)
{
    // 3 x 4 pixels; all neighbours are 100 but for the marked one, which is 150. A pixel that sees it scores
    // 1 / (50 / (100 * 8) + 1).
    const float fFlat = 1.0F, fMarked = 1.0F / (50.0F / 800.0F + 1.0F);
    const struct {
        const char* name;
        std::size_t nPixel, nMarked;
        float fExpected;
    } cases[] = {
        {"first pixel, right", 0, 1, fMarked},
        {"first pixel, below", 0, 3, fMarked},
        {"first pixel, the row end below left", 0, 2, fMarked},
        {"first pixel, too far", 0, 5, fFlat},
        {"row end, start of the next row", 2, 3, fMarked},
        {"row end, start of the row after it", 2, 6, fMarked},
        {"centre", 4, 8, fMarked},
        {"last pixel, above", 11, 8, fMarked},
        {"last pixel, start of its row", 11, 9, fMarked},
        {"last pixel, too far", 11, 6, fFlat},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Bytes plane(12, 100);
        plane[c.nMarked] = 150;
        Probe construct;
        construct.Add(3, {plane});
        EXPECT_EQ(c.fExpected, construct.PixelInformation(c.nPixel, 0));
    }
}

TEST(PixelInformation, ChoosesTheBestImageTheLaterOnTies)
{
    const struct {
        const char* name;
        unsigned char z0, z1; // at the centre of flat surroundings of 100
        double dChosen;
    } cases[] = {
        {"nearer to the middle", 90, 120, 120},
        {"nearer, in the earlier image", 120, 90, 120},
        {"equal trust", 105, 150, 150},
        {"equal trust, other way round", 150, 105, 105},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Bytes first(9, 100), second(9, 100);
        first[4] = c.z0;
        second[4] = c.z1;
        Probe construct;
        construct.Add(3, {first});
        construct.Add(3, {second});
        const double dDistance = 8 * std::fabs(c.dChosen - 100) / (c.dChosen * 8);
        EXPECT_FLOAT_EQ(static_cast<float>(1 / (dDistance + 1)), construct.PixelInformation(4, 0));
    }
}

TEST(PixelInformation, BlackBecomesOneInThePlane)
{
    Probe construct;
    construct.Add(2, {Bytes{0, 0, 0, 0}});
    construct.Add(2, {Bytes{0, 50, 0, 0}});
    // The first pixel: 0 becomes 1 in the first image, which is then trusted more than the second.
    EXPECT_FLOAT_EQ(1 / (4 / 8.0F + 1), construct.PixelInformation(0, 0)); // indexes 0, 1, and 1, 2, 3 below
    EXPECT_THAT(construct.vpImages[0]->ppPlanes[0], ElementsAre(1, 0, 0, 0));
    EXPECT_THAT(construct.vpImages[1]->ppPlanes[0], ElementsAre(0, 50, 0, 0));
    EXPECT_THAT(construct.vpImages[0]->ppPlanes[1], ElementsAre(0, 0, 0, 0));
    construct.PixelInformation(1, 0);
    EXPECT_THAT(construct.vpImages[0]->ppPlanes[0], ElementsAre(1, 1, 0, 0));
    // Known by now, whatever the channel.
    construct.pfInformation[0] = 0.25F;
    EXPECT_EQ(0.25F, construct.PixelInformation(0, 2));
}

/// What a value puts into the histogram.
std::array<float, 256> Spread(float fValue)
{
    Probe construct;
    construct.AddCount(1);
    std::array<float, 256> histogram{};
    const SampleRecord record = Record({fValue});
    construct.AddInformation({&record, 1}, histogram, 0);
    return histogram;
}

TEST(AddInformation, TriangleOfTheNoise)
{
    const struct {
        float fValue;
        std::vector<std::pair<std::size_t, double>> bins;
    } cases[] = {
        {0, {{0, 2}, {1, 0}}}, // width at least 0.5
        {2.25F, {{1, 0}, {2, 1}, {3, 0}}},
        {64, {{62, 0}, {63, 0.25}, {64, 0.5}, {65, 0.25}, {66, 0}}},
        {144, {{142, 1 / 9.0}, {143, 2 / 9.0}, {144, 1 / 3.0}, {146, 1 / 9.0}, {147, 0}}},
        {255, {{252, 0.06225}, {255, 0.2505}}},
    };
    for (const auto& c : cases)
        for (const auto& [nBin, dShare] : c.bins)
            EXPECT_NEAR(dShare, Spread(c.fValue)[nBin], 5e-5) << c.fValue << " at " << nBin;
}

TEST(InformationAdded, FallsFromTheNumberOfValuesWhereBinsFill)
{
    Probe construct;
    construct.AddCount(2);
    std::vector<SampleRecord> records;
    records.push_back(Record({64, 144}));
    records.push_back(Record({64, 200}));
    records.push_back(Record({64, 144}));
    std::array<float, 256> histogram{};
    EXPECT_FLOAT_EQ(3 + 5, construct.InformationAdded(records, histogram, 0)); // each new bin counts 1
    construct.AddInformation(records, histogram, 0);
    EXPECT_FLOAT_EQ((3 + 5) / 2.0F, construct.InformationAdded(records, histogram, 2));
    EXPECT_FLOAT_EQ(3 / 2.0F + 7, construct.InformationAdded(records, histogram, 1));
}

TEST(InformationAdded, WhatGoesWrongBecomesItsException)
{
    Probe construct;
    construct.AddCount(1);
    std::vector<SampleRecord> vRecords(2);
    vRecords.push_back(Record({std::nanf("")}));
    vRecords.push_back(Record({-1}));
    vRecords.push_back(Record({256}));
    std::array<float, 256> histogram{};
    for (const std::size_t nRecord : {0, 2, 3, 4, 5}) {
        SCOPED_TRACE(nRecord);
        EXPECT_EQ("InformationAdded Exception!",
                  ExceptionText([&] { construct.InformationAdded(vRecords, histogram, nRecord); }));
        EXPECT_EQ("AddInformation Exception!",
                  ExceptionText([&] { construct.AddInformation(vRecords, histogram, nRecord); }));
    }
}

TEST(SelectSample, EarlierWinsTiesAndRecordZeroIsTheLastResort)
{
    Probe construct;
    construct.AddCount(1);
    std::array<float, 256> histogram{};
    std::vector<SampleRecord> vRecords;
    vRecords.push_back(Record({10}, 0.0F)); // worth nothing
    vRecords.push_back(Record({100}, 0.5F));
    vRecords.push_back(Record({200}, 0.5F)); // spreads over more bins
    vRecords.push_back(SampleRecord());
    vRecords.push_back(Record({200}, 0.5F)); // as good
    vRecords.push_back(Record({40}, 1.0F));
    std::array<std::size_t, 7> vnTaken{};
    for (std::size_t& n : vnTaken)
        n = construct.SelectSample(histogram, vRecords);
    EXPECT_THAT(vnTaken, ElementsAre(2, 5, 1, 4, 0, 0, 0));

    std::vector<SampleRecord> vEmpty(256);
    EXPECT_EQ("AddInformation Exception!", ExceptionText([&] { construct.SelectSample(histogram, vEmpty); }));
}

/// The definition: every record that is left is looked at, every time.
std::size_t PlainSelectSample(const Probe& construct, std::span<float> pfHistogram,
                              std::span<SampleRecord> pRecords)
{
    double dBest = 0;
    std::size_t nBest = 0;
    for (std::size_t n = 0; n < pRecords.size(); ++n)
        if (pRecords[n].pfValues && !pRecords[n].bUsed) {
            const double dWorth = static_cast<double>(pRecords[n].fWeight) *
                                  construct.InformationAdded(pRecords, pfHistogram, n);
            if (dWorth > dBest) {
                dBest = dWorth;
                nBest = n;
            }
        }
    construct.AddInformation(pRecords, pfHistogram, nBest);
    pRecords[nBest].bUsed = true;
    return nBest;
}

TEST(SelectSample, EqualsThePlainSearch)
{
    constexpr int IMAGES = 3, RECORDS = IMAGES * 256, SAMPLES = 400;
    Probe construct;
    construct.AddCount(IMAGES);
    for (unsigned nSeed = 0; nSeed < 8; ++nSeed) {
        // Coarse values and weights make many records equal; every seventh record is empty.
        std::mt19937 random(nSeed);
        std::vector<SampleRecord> vFirst, vSecond;
        for (int n = 0; n < RECORDS; ++n) {
            const auto value = [&random, bCoarse = nSeed < 4] {
                return bCoarse ? static_cast<float>(random() % 30)
                               : static_cast<float>(random() % 25500) / 100;
            };
            const float v0 = value(), v1 = value(), v2 = value();
            const float fWeight = static_cast<float>(random() % 5) / 4;
            vFirst.push_back(n % 7 ? Record({v0, v1, v2}, fWeight) : SampleRecord());
            vSecond.push_back(n % 7 ? Record({v0, v1, v2}, fWeight) : SampleRecord());
        }
        vFirst[0] = Record({1, 2, 3}, 0.0F); // the last resort must not fail
        vSecond[0] = Record({1, 2, 3}, 0.0F);
        std::array<float, 256> firstHistogram{}, secondHistogram{};
        for (int q = 0; q < SAMPLES; ++q)
            ASSERT_EQ(PlainSelectSample(construct, firstHistogram, vFirst),
                      construct.SelectSample(secondHistogram, vSecond))
                << "seed " << nSeed << ", sample " << q;
        EXPECT_EQ(firstHistogram, secondHistogram);
    }
}

/// The statistics once more, written apart: one record at a time instead of one pixel at a time.
class PlainStatistics {
public:
    PlainStatistics(const Probe& construct, std::int32_t nWidth, std::size_t nChannel)
    {
        for (const auto& pImage : construct.vpImages)
            m_vBefore.push_back(pImage->ppPlanes[nChannel]);
        m_vPlanes = m_vBefore;
        for (std::size_t p = 0; p < m_vBefore[0].size(); ++p)
            m_vInformation.push_back(IsPureBlue(construct, p) ? -1 : Measure(p, nWidth));
    }

    /// Mean values of the pixels that have nValue in nImage; sum of information last. Empty without pixels.
    std::vector<float> Means(std::size_t nImage, int nValue) const
    {
        std::vector<float> vSums(m_vPlanes.size() + 1, 0.0F);
        bool bAny = false;
        for (std::size_t p = 0; p < m_vInformation.size(); ++p) {
            // While the first image is gathered, its pixels still have the values that they came with.
            const int z = nImage == 0 ? m_vBefore[0][p] : m_vPlanes[nImage][p];
            if (m_vInformation[p] < 0 || z != nValue)
                continue;
            bAny = true;
            vSums.back() += m_vInformation[p];
            for (std::size_t k = 0; k < m_vPlanes.size(); ++k) {
                const float fProduct = m_vPlanes[k][p] * m_vInformation[p];
                vSums[k] = vSums[k] + fProduct;
            }
        }
        if (!bAny)
            return {};
        for (std::size_t k = 0; k < m_vPlanes.size(); ++k)
            vSums[k] = std::min(vSums[k] / vSums.back(), 255.0F);
        return vSums;
    }

private:
    static bool IsPureBlue(const Probe& construct, std::size_t p)
    {
        return std::any_of(construct.vpImages.begin(), construct.vpImages.end(), [p](const auto& pImage) {
            const auto& planes = pImage->ppPlanes;
            return planes[0][p] == 0 && planes[1][p] == 0 && planes[2][p] == 255;
        });
    }

    float Measure(std::size_t p, std::int32_t nWidth)
    {
        std::size_t nBest = 0;
        for (std::size_t k = 0; k < m_vPlanes.size(); ++k) {
            const double dBest = k == 0 ? 0 : BiweightTable()[m_vPlanes[nBest][p]];
            if (BiweightTable()[m_vPlanes[k][p]] >= dBest) {
                nBest = k;
                if (m_vPlanes[k][p] == 0)
                    m_vPlanes[k][p] = 1;
            }
        }
        const Bytes& plane = m_vPlanes[nBest];
        int nTotal = 0;
        for (const int nOffset : {-nWidth - 1, -nWidth, 1 - nWidth, -1, 1, nWidth - 1, nWidth, nWidth + 1}) {
            const auto n = static_cast<long>(p) + nOffset;
            if (n >= 0 && n < static_cast<long>(plane.size()))
                nTotal += std::abs(plane[p] - plane[static_cast<std::size_t>(n)]);
        }
        const float fRatio = static_cast<float>(nTotal) / static_cast<float>(plane[p] * 8);
        return 1.0F / (fRatio + 1.0F);
    }

    std::vector<Bytes> m_vBefore, m_vPlanes;
    std::vector<float> m_vInformation; ///< -1 for pixels that take no part
};

/// A noisy series with black, white and pure blue pixels.
void AddNoisySeries(Probe& construct, int nImages, std::int32_t nWidth, std::size_t nPixels)
{
    std::mt19937 random(7);
    for (int i = 0; i < nImages; ++i) {
        std::vector<Bytes> vPlanes(3, Bytes(nPixels));
        for (std::size_t p = 0; p < nPixels; ++p)
            for (Bytes& plane : vPlanes) {
                const int z =
                    static_cast<int>(p * 400 / nPixels) + 60 * i - 130 + static_cast<int>(random() % 24);
                plane[p] = static_cast<unsigned char>(std::clamp(z, 0, 255));
            }
        for (std::size_t p = 5; p < nPixels; p += 97) {
            vPlanes[0][p] = vPlanes[1][p] = 0;
            vPlanes[2][p] = 255;
        }
        construct.Add(nWidth, std::move(vPlanes));
    }
}

TEST(CollectStatistics, EqualsThePlainTwin)
{
    constexpr int IMAGES = 4;
    constexpr std::int32_t WIDTH = 61; // of 43 rows
    Probe construct;
    AddNoisySeries(construct, IMAGES, WIDTH, 2623);
    const PlainStatistics plain(construct, WIDTH, 0);
    const auto vRecords = construct.Collect(0);

    float fLargest = 0;
    for (std::size_t n = 0; n < vRecords.size(); ++n)
        if (const auto vMeans = plain.Means(n / 256, static_cast<int>(n % 256)); !vMeans.empty())
            fLargest =
                std::max(fLargest, static_cast<float>(std::sqrt(vMeans.back()) * BiweightTable()[n % 256]));
    int nFilled = 0;
    for (std::size_t n = 0; n < vRecords.size(); ++n) {
        SCOPED_TRACE(n);
        const SampleRecord& record = vRecords[n];
        const auto vMeans = plain.Means(n / 256, static_cast<int>(n % 256));
        ASSERT_EQ(vMeans.empty(), !record.pfValues);
        if (vMeans.empty())
            continue;
        ++nFilled;
        EXPECT_EQ(static_cast<std::int32_t>(n / 256), record.nImage);
        EXPECT_EQ(static_cast<std::int32_t>(n % 256), record.nValue);
        for (std::size_t k = 0; k < IMAGES; ++k)
            ASSERT_EQ(std::bit_cast<std::uint32_t>(vMeans[k]),
                      std::bit_cast<std::uint32_t>(record.pfValues[k]));
        const float fTrust = static_cast<float>(std::sqrt(vMeans.back()) * BiweightTable()[n % 256]);
        ASSERT_EQ(fTrust / fLargest, record.fWeight);
    }
    EXPECT_GT(nFilled, 600); // the series fills most of the 1024 records
}

/// A series of two images whose commonest values are nLow and nHigh: of the records, seven have nLow in the
/// dark image and six have nHigh in the bright one.
void AddSeriesOfRange(Probe& construct, unsigned char nLow, unsigned char nHigh)
{
    Bytes dark, bright;
    for (unsigned char n = 1; n <= 6; ++n) {
        dark.insert(dark.end(), {nLow, static_cast<unsigned char>(nLow + 3 * n)});
        bright.insert(bright.end(), {static_cast<unsigned char>(nHigh - 3 * n), nHigh});
    }
    construct.Add(12, {dark});
    construct.Add(12, {bright});
    construct.pfInformation.assign(12, 1.0F); // so that all means are exact
}

TEST(CollectStatistics, LeastRange)
{
    for (const int nHigh : {149, 150}) {
        SCOPED_TRACE(nHigh);
        FailureRecorder failures;
        Probe construct;
        AddSeriesOfRange(construct, 100, static_cast<unsigned char>(nHigh));
        bool bCollected = false;
        construct.Collect(0, &bCollected);
        EXPECT_EQ(100, construct.nLow);
        EXPECT_EQ(nHigh, construct.nHigh);
        EXPECT_EQ(nHigh == 150, bCollected);
        EXPECT_EQ(nHigh == 150 ? 0U : 1U, failures.Lines().size());
    }
}

TEST(CollectStatistics, PureBlueInAnyImageLeavesAllChannelsOut)
{
    for (const std::int32_t nChannel : {0, 1, 2}) {
        Probe construct;
        construct.Add(3, {Bytes{10, 20, 0}, Bytes{10, 20, 0}, Bytes{10, 20, 255}});
        construct.Add(3, {Bytes{0, 30, 90}, Bytes{0, 30, 90}, Bytes{255, 30, 90}});
        const auto vRecords = construct.Collect(nChannel);
        std::vector<std::size_t> vnFilled;
        for (std::size_t n = 0; n < vRecords.size(); ++n)
            if (vRecords[n].pfValues)
                vnFilled.push_back(n);
        EXPECT_THAT(vnFilled, ElementsAre(20, 256 + 30));
    }
}

} // namespace
