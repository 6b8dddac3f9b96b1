#include "output/dib.h"

#include <cstdio>

namespace velorin {
namespace {

void Put16(std::vector<std::uint8_t>& out, std::uint32_t v) {
    out.push_back(static_cast<std::uint8_t>(v & 0xFF));
    out.push_back(static_cast<std::uint8_t>((v >> 8) & 0xFF));
}
void Put32(std::vector<std::uint8_t>& out, std::uint32_t v) {
    Put16(out, v & 0xFFFF);
    Put16(out, v >> 16);
}

bool HoldsWhatHeaderStates(const Dib& dib) {
    return dib.colours.size() >= DibColourTableSize(dib) && dib.bits.size() >= DibImageSize(dib);
}

} // namespace

std::uint32_t DibRowBytes(std::int32_t width, std::uint16_t bitCount) {
    const std::int64_t bitsInRow = static_cast<std::int64_t>(width) * bitCount;
    if (bitsInRow <= 0) return 0;
    return static_cast<std::uint32_t>((bitsInRow + 31) / 32 * 4);
}

std::uint32_t DibColourCount(const Dib& dib) {
    if (dib.clrUsed != 0) return dib.clrUsed;
    switch (dib.bitCount) {
    case 1:
        return 2;
    case 4:
        return 16;
    case 8:
        return 256;
    default:
        return 0;
    }
}

std::uint32_t DibColourTableSize(const Dib& dib) {
    return DibColourCount(dib) * (dib.headerSize == 40 ? 4u : 3u);
}

std::uint32_t DibImageSize(const Dib& dib) {
    if (dib.compression == BI_RLE8 || dib.compression == BI_RLE4) return dib.sizeImage;
    const std::int64_t rows = dib.height < 0 ? -static_cast<std::int64_t>(dib.height) : dib.height;
    return static_cast<std::uint32_t>(DibRowBytes(dib.width, dib.bitCount) * rows);
}

namespace {

// The file header, the 40-byte header and the colour table: all the file
// holds before its pixels. The caller has checked the block.
std::vector<std::uint8_t> FileHead(const Dib& dib) {
    const std::uint32_t table = DibColourTableSize(dib);
    const std::uint32_t image = DibImageSize(dib);
    const std::uint32_t offset = 14 + 40 + table;
    std::vector<std::uint8_t> out;
    out.reserve(offset);
    out.push_back('B');
    out.push_back('M');
    Put32(out, offset + image);
    Put16(out, 0);
    Put16(out, 0);
    Put32(out, offset);
    Put32(out, 40);
    Put32(out, static_cast<std::uint32_t>(dib.width));
    Put32(out, static_cast<std::uint32_t>(dib.height));
    Put16(out, dib.planes);
    Put16(out, dib.bitCount);
    Put32(out, dib.compression);
    Put32(out, image); // biSizeImage as written
    Put32(out, static_cast<std::uint32_t>(dib.xPelsPerMeter));
    Put32(out, static_cast<std::uint32_t>(dib.yPelsPerMeter));
    Put32(out, dib.clrUsed);
    Put32(out, dib.clrImportant);
    out.insert(out.end(), dib.colours.begin(), dib.colours.begin() + table);
    return out;
}

} // namespace

std::vector<std::uint8_t> DibFileBytes(const Dib& dib) {
    if (dib.headerSize != 40 || !HoldsWhatHeaderStates(dib)) return {};
    std::vector<std::uint8_t> out = FileHead(dib);
    out.insert(out.end(), dib.bits.begin(), dib.bits.begin() + DibImageSize(dib));
    return out;
}

int WriteDib(const Dib* dib, const std::string& path) {
    if (dib == nullptr) return DibNullHandle;
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return DibNotWritten;
    if (dib->headerSize != 40) {
        std::fclose(file);
        return DibWritten;
    }
    if (!HoldsWhatHeaderStates(*dib)) {
        std::fclose(file);
        return DibNotLockable;
    }
    // The head, then the pixels straight from the block: a picture of the
    // desk is megabytes, and is not copied once more to be written.
    const std::vector<std::uint8_t> head = FileHead(*dib);
    const std::size_t image = DibImageSize(*dib);
    const bool written = std::fwrite(head.data(), 1, head.size(), file) == head.size() &&
                         std::fwrite(dib->bits.data(), 1, image, file) == image;
    const bool closed = std::fclose(file) == 0;
    return written && closed ? DibWritten : DibNotWritten;
}

} // namespace velorin
