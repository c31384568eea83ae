// What the first bytes of a picture file tell before anything is decoded.
#pragma once

#include <cstdint>

enum class PictureFormat { Jpeg, Png, Tiff, Other };

/// The format of an open file by its signature; the reading position plays no part and stays.
PictureFormat FormatOf(int nFile);

/// The size of an open file; 0 if it can't be told.
std::uint64_t FileBytes(int nFile);

/// Whether a file is larger than photographs are: 128 MB. A file of no content may claim any length,
/// and what goes through it byte by byte takes hours. False for TIFF, whose parts are found by their offsets.
bool IsOversized(std::uint64_t nFileBytes, PictureFormat format);

/// The number of pixels that the header of an open file asks for: the larger of the picture and of one tile.
/// 0 where the header doesn't tell in its first 64 MB, which the format's decoder then finds as well, and for
/// other formats. Leaves the reading position at the start of the file.
std::uint64_t PixelsAsked(int nFile, PictureFormat format);

/// How often the decoder of an open JPEG file would go over the whole picture, counted up to nMost + 1. 1 for
/// files that hold one scan, and for other formats; the reading position plays no part and stays.
///
/// A progressive picture is decoded scan by scan, and each, however short, costs as much time as a picture.
int Scans(int nFile, PictureFormat format, int nMost);

/// Whether an open PNG file holds all of the chunks that it announces, up to its last; true for other
/// formats. The reading position plays no part and stays.
///
/// The format's decoder doesn't look at how much it got. Behind the end of a file it takes old bytes for new
/// ones until a chunk of up to 2 GB is over, which may take minutes.
bool HoldsItsChunks(int nFile, PictureFormat format);

/// Whether an open TIFF file is laid out as writers of photographs do it: in strips, or in tiles that cover
/// not much more than the picture, with up to four samples of up to 16 bits, plain or in a coding whose work
/// grows with the pixels alone. True for other formats. Leaves the reading position at the start of the file.
///
/// A small file can claim thousands of tiles of the largest size, or a hundred scans of JPEG for each strip.
bool HasUsualLayout(int nFile, PictureFormat format);
