// The Radiance writer at its plainest, to measure against.
#include "bench/HDRFile/PlainRadiance.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <memory>
#include <vector>

namespace LS::Bench {

namespace {

void ConvertPixel(unsigned char* pFirst, std::size_t nStride, const float* pfPixel)
{
    const float fLargest = std::max({pfPixel[0], pfPixel[1], pfPixel[2]});
    if (fLargest < 1e-32) {
        for (std::size_t k = 0; k < 4; ++k)
            pFirst[k * nStride] = 0;
        return;
    }
    int nExponent = 0;
    const float fFraction = std::frexp(fLargest, &nExponent);
    const auto fScale = static_cast<float>(fFraction * 256.0 / fLargest);
    for (std::size_t k = 0; k < 3; ++k)
        pFirst[k * nStride] = static_cast<unsigned char>(static_cast<int>(pfPixel[k] * fScale));
    pFirst[3 * nStride] = static_cast<unsigned char>(nExponent + 128);
}

void WriteRun(FILE* pFile, std::size_t nLength, unsigned char nValue)
{
    const unsigned char packet[] = {static_cast<unsigned char>(128 + nLength), nValue};
    std::fwrite(packet, 1, sizeof packet, pFile);
}

void WritePlane(FILE* pFile, const unsigned char* pData, std::size_t nCount)
{
    for (std::size_t nCur = 0; nCur < nCount;) {
        std::size_t nBegRun = nCur, nRun = 0, nOldRun = 0;
        while (nRun < 4 && nBegRun < nCount) {
            nBegRun += nRun;
            nOldRun = nRun;
            nRun = 1;
            while (nBegRun + nRun < nCount && nRun < 127 && pData[nBegRun] == pData[nBegRun + nRun])
                ++nRun;
        }
        if (nOldRun > 1 && nOldRun == nBegRun - nCur) {
            WriteRun(pFile, nOldRun, pData[nCur]);
            nCur = nBegRun;
        }
        while (nCur < nBegRun) {
            const std::size_t nLength = std::min<std::size_t>(nBegRun - nCur, 128);
            const auto nLengthByte = static_cast<unsigned char>(nLength);
            std::fwrite(&nLengthByte, 1, 1, pFile);
            std::fwrite(pData + nCur, 1, nLength, pFile);
            nCur += nLength;
        }
        if (nRun >= 4) {
            WriteRun(pFile, nRun, pData[nBegRun]);
            nCur += nRun;
        }
    }
}

} // namespace

void WritePlainRadiance(const std::string& sSource, const std::string& sPicture, std::int32_t nWidth,
                        std::int32_t nHeight)
{
    const auto nPixels = static_cast<std::size_t>(nWidth);
    const std::unique_ptr<FILE, int (*)(FILE*)> pFile(std::fopen(sPicture.c_str(), "wb"), std::fclose);
    std::fprintf(pFile.get(), "#?RGBE\nFORMAT=32-bit_rle_rgbe\n\n-Y %d +X %d\n", nHeight, nWidth);
    std::ifstream source(sSource, std::ios::binary);
    std::vector<float> vfRow(3 * nPixels);
    std::vector<unsigned char> vPlanes(4 * nPixels);
    for (std::int32_t y = 0; y < nHeight; ++y) {
        source.read(reinterpret_cast<char*>(vfRow.data()),
                    static_cast<std::streamsize>(vfRow.size() * sizeof(float)));
        for (float& fValue : vfRow)
            fValue = static_cast<float>(fValue * 0.001);
        const unsigned char header[] = {2, 2, static_cast<unsigned char>(nWidth >> 8),
                                        static_cast<unsigned char>(nWidth & 0xFF)};
        std::fwrite(header, 1, sizeof header, pFile.get());
        for (std::size_t x = 0; x < nPixels; ++x)
            ConvertPixel(vPlanes.data() + x, nPixels, vfRow.data() + 3 * x);
        for (std::size_t k = 0; k < 4; ++k)
            WritePlane(pFile.get(), vPlanes.data() + k * nPixels, nPixels);
    }
}

} // namespace LS::Bench
