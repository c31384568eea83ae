// How a photograph is turned so that it stands upright.
#include "image/Orientation.h"

#include "Util/PixelBuffer.h"

#include <wx/image.h>

#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>

using LS::Util::PixelBuffer;

namespace {

struct Rgb {
    unsigned char value[3];
};

template <typename Pixel>
void TurnInPlace(Pixel* pPixels, std::size_t nWidth, std::size_t nHeight, Orientation orientation)
{
    const auto row = [=](std::size_t y) { return pPixels + y * nWidth; };
    if (orientation == Orientation::HalfTurn)
        std::reverse(row(0), row(nHeight));
    else if (orientation == Orientation::MirrorColumns)
        for (std::size_t y = 0; y < nHeight; ++y)
            std::reverse(row(y), row(y + 1));
    else if (orientation == Orientation::MirrorRows)
        for (std::size_t y = 0; y < nHeight / 2; ++y)
            std::swap_ranges(row(y), row(y + 1), row(nHeight - 1 - y));
}

/// Copies rows into columns.
template <typename Pixel>
void ExchangeSides(const Pixel* pFrom, Pixel* pTo, std::size_t nWidth, std::size_t nHeight,
                   Orientation orientation)
{
    const bool bBottomIsLeft =
        orientation == Orientation::QuarterRight || orientation == Orientation::AntiTranspose;
    const bool bRightIsTop =
        orientation == Orientation::QuarterLeft || orientation == Orientation::AntiTranspose;
    // In blocks: else each pixel of a column fetches another line of memory.
    constexpr std::size_t BLOCK = 32;
    for (std::size_t nTop = 0; nTop < nHeight; nTop += BLOCK)
        for (std::size_t nLeft = 0; nLeft < nWidth; nLeft += BLOCK)
            for (std::size_t x = nLeft; x < std::min(nLeft + BLOCK, nWidth); ++x) {
                Pixel* const pRow = pTo + (bRightIsTop ? nWidth - 1 - x : x) * nHeight;
                for (std::size_t y = nTop; y < std::min(nTop + BLOCK, nHeight); ++y)
                    pRow[bBottomIsLeft ? nHeight - 1 - y : y] = pFrom[y * nWidth + x];
            }
}

} // namespace

bool TurnUpright(wxImage& image, Orientation orientation)
{
    if (orientation == Orientation::Upright)
        return true;
    const auto nWidth = static_cast<std::size_t>(image.GetWidth());
    const auto nHeight = static_cast<std::size_t>(image.GetHeight());
    auto* const pPixels = reinterpret_cast<Rgb*>(image.GetData());
    unsigned char* const pAlpha = image.HasAlpha() ? image.GetAlpha() : nullptr;
    if (!ExchangesSides(orientation)) {
        TurnInPlace(pPixels, nWidth, nHeight, orientation);
        if (pAlpha)
            TurnInPlace(pAlpha, nWidth, nHeight, orientation);
        return true;
    }

    PixelBuffer pTurned, pTurnedAlpha;
    try {
        pTurned = LS::Util::MakePixelBuffer(3 * nWidth * nHeight);
        if (pAlpha)
            pTurnedAlpha = LS::Util::MakePixelBuffer(nWidth * nHeight);
    } catch (const std::bad_alloc&) {
        return false;
    }
    ExchangeSides(pPixels, reinterpret_cast<Rgb*>(pTurned.get()), nWidth, nHeight, orientation);
    if (pAlpha)
        ExchangeSides(pAlpha, pTurnedAlpha.get(), nWidth, nHeight, orientation);
    // Frees both planes and keeps the mask colour.
    image.SetData(pTurned.release(), static_cast<int>(nHeight), static_cast<int>(nWidth));
    if (pTurnedAlpha)
        image.SetAlpha(pTurnedAlpha.release());
    return true;
}
