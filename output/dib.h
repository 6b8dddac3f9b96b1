#pragma once
// A device-independent bitmap: the 40-byte Windows header's fields, the
// colour table and the pixel rows, bottom-up, each row padded to 4 bytes.
// WriteDib writes it as a .bmp file in the published layout.

#include <cstdint>
#include <string>
#include <vector>

namespace velorin {

inline constexpr std::uint32_t BI_RGB = 0;
inline constexpr std::uint32_t BI_RLE8 = 1;
inline constexpr std::uint32_t BI_RLE4 = 2;

struct Dib {
    std::uint32_t headerSize = 40; // 40: a Windows header; anything else is the older core header
    std::int32_t width = 0;
    std::int32_t height = 0; // positive: rows stored bottom-up
    std::uint16_t planes = 1;
    std::uint16_t bitCount = 24;
    std::uint32_t compression = BI_RGB;
    std::uint32_t sizeImage = 0; // the byte count of an RLE image; computed otherwise
    std::int32_t xPelsPerMeter = 0;
    std::int32_t yPelsPerMeter = 0;
    std::uint32_t clrUsed = 0;
    std::uint32_t clrImportant = 0;
    std::vector<std::uint8_t> colours; // the colour table: blue, green, red, 0 per entry
    std::vector<std::uint8_t> bits;    // the pixel rows, bottom row first
};

// Bytes in one pixel row: ((width x bits + 31) / 32) x 4.
std::uint32_t DibRowBytes(std::int32_t width, std::uint16_t bitCount);
// biClrUsed when set, else 2, 16 or 256 for 1, 4 or 8 bits, else 0.
std::uint32_t DibColourCount(const Dib& dib);
// Colours x 4, or x 3 for a core header.
std::uint32_t DibColourTableSize(const Dib& dib);
// The image size the file states: biSizeImage for RLE, the row formula otherwise.
std::uint32_t DibImageSize(const Dib& dib);

// The whole .bmp file: 14-byte file header, the 40-byte header, the colour
// table, the pixels. Empty for a header size other than 40, and for a block
// whose table or pixels fall short of what its header states.
std::vector<std::uint8_t> DibFileBytes(const Dib& dib);

inline constexpr int DibWritten = 0;
inline constexpr int DibNotLockable = 3;
inline constexpr int DibNotWritten = 4;
inline constexpr int DibNullHandle = 20;

// Writes `dib` to `path`, replacing the file. 0 when written (a header size
// other than 40 leaves an empty file and gives 0 too), 3 when the block does
// not hold the table and pixels its header states, 4 when the file cannot be
// created or nothing was written, 20 for a null handle.
int WriteDib(const Dib* dib, const std::string& path);

} // namespace velorin
