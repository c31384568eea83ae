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

std::string TakeLine(const Bytes& bytes, std::size_t& nPosition)
{
    std::string sLine;
    for (unsigned char c = 0; (c = bytes.at(nPosition++)) != '\n';)
        sLine += static_cast<char>(c);
    return sLine;
}

void ReadScanline(const Bytes& bytes, std::size_t& nPosition, std::span<Rgbe> row)
{
    const Rgbe start{bytes.at(nPosition), bytes.at(nPosition + 1), bytes.at(nPosition + 2),
                     bytes.at(nPosition + 3)};
    const bool bEncoded = start[0] == 2 && start[1] == 2 && start[2] < 128;
    nPosition += bEncoded ? 4 : 0;
    Require(!bEncoded || start[2] * 256U + start[3] == row.size(), "a scanline of another width");
    for (std::size_t k = 0; bEncoded && k < 4; ++k) {
        const Bytes plane = ReadRgbePlane(bytes, nPosition, row.size());
        for (std::size_t i = 0; i < row.size(); ++i)
            row[i][k] = plane[i];
    }
    for (std::size_t i = 0; !bEncoded && i < 4 * row.size(); ++i)
        row[i / 4][i % 4] = bytes.at(nPosition++);
}

} // namespace

Bytes ReadRgbePlane(const Bytes& bytes, std::size_t& nPosition, std::size_t nCount)
{
    Bytes plane;
    while (plane.size() < nCount) {
        const std::size_t nCode = bytes.at(nPosition++);
        Require(nCode != 0, "an empty packet");
        if (nCode > 128)
            plane.insert(plane.end(), nCode - 128, bytes.at(nPosition++));
        for (std::size_t i = 0; nCode <= 128 && i < nCode; ++i)
            plane.push_back(bytes.at(nPosition++));
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
    Require(picture.vsHeader.at(0).starts_with("#?"), "no magic line");
    Require(std::ranges::count(picture.vsHeader, "FORMAT=32-bit_rle_rgbe") == 1, "another pixel format");
    const std::string sSize = TakeLine(bytes, nPosition);
    std::sscanf(sSize.c_str(), "-Y %d +X %d", &picture.nHeight, &picture.nWidth);
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
