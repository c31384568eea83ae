// Parses header, resolution line and scanlines of a Radiance picture.
#include "tests/support/RgbeReader.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <span>
#include <stdexcept>

namespace LS::Tests {

namespace {

void Require(bool bTrue, const char* szFault)
{
    if (!bTrue)
        throw std::runtime_error(std::string("RGBE: ") + szFault);
}

std::span<const unsigned char> Take(const Bytes& bytes, std::size_t& nPosition, std::size_t nCount)
{
    Require(nCount <= bytes.size() - nPosition, "the file ends too early");
    const auto taken = std::span(bytes).subspan(nPosition, nCount);
    nPosition += nCount;
    return taken;
}

std::string TakeLine(const Bytes& bytes, std::size_t& nPosition)
{
    std::string sLine;
    for (char c = 0; (c = static_cast<char>(Take(bytes, nPosition, 1)[0])) != '\n';)
        sLine += c;
    return sLine;
}

bool StartsEncodedScanline(const Bytes& bytes, std::size_t nPosition)
{
    return bytes.size() - nPosition >= 4 && bytes[nPosition] == 2 && bytes[nPosition + 1] == 2 &&
           bytes[nPosition + 2] < 128;
}

void ReadScanline(const Bytes& bytes, std::size_t& nPosition, std::span<Rgbe> row)
{
    if (!StartsEncodedScanline(bytes, nPosition)) {
        for (Rgbe& pixel : row)
            std::ranges::copy(Take(bytes, nPosition, 4), pixel.begin());
        return;
    }
    const auto header = Take(bytes, nPosition, 4);
    Require(header[2] * 256U + header[3] == row.size(), "a scanline of another width");
    for (std::size_t k = 0; k < 4; ++k) {
        const Bytes plane = ReadRgbePlane(bytes, nPosition, row.size());
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i][k] = plane[i];
    }
}

} // namespace

Bytes ReadRgbePlane(const Bytes& bytes, std::size_t& nPosition, std::size_t nCount)
{
    Bytes plane;
    while (plane.size() < nCount) {
        const std::size_t nCode = Take(bytes, nPosition, 1)[0];
        Require(nCode != 0, "an empty packet");
        if (nCode > 128) {
            plane.insert(plane.end(), nCode - 128, Take(bytes, nPosition, 1)[0]);
        } else {
            const auto literals = Take(bytes, nPosition, nCode);
            plane.insert(plane.end(), literals.begin(), literals.end());
        }
    }
    Require(plane.size() == nCount, "a packet leaves its plane");
    return plane;
}

RgbePicture ReadRgbe(const Bytes& bytes)
{
    RgbePicture picture;
    std::size_t nPosition = 0;
    for (std::string sLine; !(sLine = TakeLine(bytes, nPosition)).empty();)
        picture.vsHeader.push_back(sLine);
    Require(!picture.vsHeader.empty() && picture.vsHeader[0].starts_with("#?"), "no magic line");
    Require(std::ranges::count(picture.vsHeader, "FORMAT=32-bit_rle_rgbe") == 1, "another pixel format");

    int nEnd = 0;
    const std::string sSize = TakeLine(bytes, nPosition);
    const int nFields = std::sscanf(sSize.c_str(), "-Y %d +X %d%n", &picture.nHeight, &picture.nWidth, &nEnd);
    Require(nFields == 2 && sSize.size() == static_cast<std::size_t>(nEnd), "no resolution line");
    Require(picture.nWidth > 0 && picture.nHeight > 0, "an empty picture");

    const auto nWidth = static_cast<std::size_t>(picture.nWidth);
    picture.vPixels.resize(nWidth * static_cast<std::size_t>(picture.nHeight));
    for (std::span<Rgbe> rest = picture.vPixels; !rest.empty(); rest = rest.subspan(nWidth))
        ReadScanline(bytes, nPosition, rest.first(nWidth));
    Require(nPosition == bytes.size(), "bytes behind the last scanline");
    return picture;
}

double RgbeValue(const Rgbe& pixel, std::size_t nChannel)
{
    return pixel.at(nChannel) * RgbeStep(pixel);
}

double RgbeStep(const Rgbe& pixel)
{
    return pixel[3] == 0 ? 0.0 : std::ldexp(1.0, pixel[3] - (128 + 8));
}

} // namespace LS::Tests
