#include "vantor/PixelFormat.h"

#include <linux/fb.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>

namespace Vantor {

namespace {

// Where each channel sits in a canvas colour 0x00RRGGBB.
const unsigned kRedShift = 16;
const unsigned kGreenShift = 8;
const unsigned kBlueShift = 0;

uint32_t Mask(const CPixelFormat::Channel& channel) {
    return ((1u << channel.length) - 1u) << channel.offset;
}

bool IsUnset(const fb_bitfield& field) {
    return field.offset == 0 && field.length == 0;
}

// The shifts of one channel, kept in locals so the row loops vectorise.
struct Packer {
    explicit Packer(const CPixelFormat& format)
        : redDown(kRedShift + 8 - format.red.length),
          greenDown(kGreenShift + 8 - format.green.length),
          blueDown(kBlueShift + 8 - format.blue.length),
          redMask((1u << format.red.length) - 1u),
          greenMask((1u << format.green.length) - 1u),
          blueMask((1u << format.blue.length) - 1u),
          redUp(format.red.offset),
          greenUp(format.green.offset),
          blueUp(format.blue.offset) {}

    uint32_t operator()(uint32_t colour) const {
        return (((colour >> redDown) & redMask) << redUp) |
               (((colour >> greenDown) & greenMask) << greenUp) |
               (((colour >> blueDown) & blueMask) << blueUp);
    }

    unsigned redDown, greenDown, blueDown;
    uint32_t redMask, greenMask, blueMask;
    unsigned redUp, greenUp, blueUp;
};

// Device memory is read and written in the CPU's byte order, as the kernel's own
// drawing code does; the 24-bit form is assembled byte by byte, lowest byte first.
template <int Bytes>
inline void Store(uint8_t* device, uint32_t value) {
    if (Bytes == 4) {
        std::memcpy(device, &value, 4);
    } else if (Bytes == 2) {
        const uint16_t narrow = static_cast<uint16_t>(value);
        std::memcpy(device, &narrow, 2);
    } else {
        device[0] = static_cast<uint8_t>(value);
        device[1] = static_cast<uint8_t>(value >> 8);
        device[2] = static_cast<uint8_t>(value >> 16);
    }
}

template <int Bytes>
inline uint32_t Load(const uint8_t* device) {
    if (Bytes == 4) {
        uint32_t value;
        std::memcpy(&value, device, 4);
        return value;
    }
    if (Bytes == 2) {
        uint16_t narrow;
        std::memcpy(&narrow, device, 2);
        return narrow;
    }
    return device[0] | (uint32_t(device[1]) << 8) | (uint32_t(device[2]) << 16);
}

// The loops run in blocks of a fixed count over buffers that never overlap (a canvas
// or background buffer and screen memory), which the compiler turns into vector code
// even at -O2; the few pixels left over take the same path one by one.
const size_t kBlock = 16;

// Four 24-bit pixels are exactly three words. On a little-endian CPU moving whole
// words gives the same bytes as Store<3>/Load<3>, at a fraction of the cost.
const bool kLittleEndian = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;

void StoreWord(uint8_t* device, uint32_t word) {
    std::memcpy(device, &word, 4);
}

void StoreGroup24(uint8_t* device, const uint32_t* v) {
    StoreWord(device, v[0] | v[1] << 24);
    StoreWord(device + 4, v[1] >> 8 | v[2] << 16);
    StoreWord(device + 8, v[2] >> 16 | v[3] << 8);
}

uint32_t LoadWord(const uint8_t* device) {
    uint32_t word;
    std::memcpy(&word, device, 4);
    return word;
}

void LoadBlock24(const uint8_t* __restrict device, uint32_t* __restrict v) {
    for (size_t g = 0; g < kBlock; g += 4, v += 4, device += 12) {
        const uint32_t w0 = LoadWord(device), w1 = LoadWord(device + 4), w2 = LoadWord(device + 8);
        v[0] = w0 & 0xFFFFFF;
        v[1] = (w0 >> 24 | w1 << 8) & 0xFFFFFF;
        v[2] = (w1 >> 16 | w2 << 16) & 0xFFFFFF;
        v[3] = w2 >> 8;
    }
}

template <int Bytes>
void EncodeAll(const Packer& pack, const uint32_t* __restrict colours, uint8_t* __restrict device,
               size_t count) {
    const Packer local = pack;
    size_t i = 0;
    for (; i + kBlock <= count; i += kBlock) {
        if (Bytes == 3 && kLittleEndian) {
            // Packed as one vector step, then stored as whole words.
            uint32_t values[kBlock];
            for (size_t k = 0; k < kBlock; ++k) values[k] = local(colours[i + k]);
            for (size_t g = 0; g < kBlock; g += 4) StoreGroup24(device + (i + g) * 3, values + g);
        } else {
            for (size_t k = 0; k < kBlock; ++k)
                Store<Bytes>(device + (i + k) * Bytes, local(colours[i + k]));
        }
    }
    for (; i < count; ++i) Store<Bytes>(device + i * Bytes, local(colours[i]));
}

template <int Bytes>
void ReadAll(const uint8_t* __restrict device, uint32_t* __restrict raw, size_t count) {
    size_t i = 0;
    for (; i + kBlock <= count; i += kBlock) {
        if (Bytes == 3 && kLittleEndian) {
            LoadBlock24(device + i * 3, raw + i);
        } else {
            for (size_t k = 0; k < kBlock; ++k) raw[i + k] = Load<Bytes>(device + (i + k) * Bytes);
        }
    }
    for (; i < count; ++i) raw[i] = Load<Bytes>(device + i * Bytes);
}

template <int Bytes>
void WriteAll(const uint32_t* __restrict raw, uint8_t* __restrict device, size_t count) {
    size_t i = 0;
    for (; i + kBlock <= count; i += kBlock) {
        if (Bytes == 3 && kLittleEndian) {
            for (size_t g = i; g < i + kBlock; g += 4) StoreGroup24(device + g * 3, raw + g);
        } else {
            for (size_t k = 0; k < kBlock; ++k) Store<Bytes>(device + (i + k) * Bytes, raw[i + k]);
        }
    }
    for (; i < count; ++i) Store<Bytes>(device + i * Bytes, raw[i]);
}

// A row copy of a few KiB through glibc 2.36 on x86-64 runs up to 13 times slower when
// the destination lies 4 to 60 bytes past the source modulo 4 KiB (4-12 bytes: 13x,
// 16-60: 1.3-1.5x): its large-copy loop then stalls on stores that the CPU cannot tell
// from the loads that follow. Which distance a row gets is decided by where a canvas
// sits on the screen and where its buffer landed, so no position may be slow: rows at
// such a distance go in pieces of at most 512 bytes, which that library moves with
// every load ahead of every store. Measured on each distance, a row in pieces costs
// about what the best-placed whole row does.
const uintptr_t kStallWindow = 64;
const size_t kPieceBytes = 512;

void CopyRow(uint8_t* to, const uint8_t* from, size_t bytes) {
    const uintptr_t distance =
        (reinterpret_cast<uintptr_t>(to) - reinterpret_cast<uintptr_t>(from)) % 4096;
    if (distance >= kStallWindow || bytes <= kPieceBytes) {
        std::memcpy(to, from, bytes);
        return;
    }
    for (size_t done = 0; done < bytes; done += kPieceBytes) {
        std::memcpy(to + done, from + done, std::min(kPieceBytes, bytes - done));
    }
}

}  // namespace

CPixelFormat::CPixelFormat()
    : CPixelFormat(32, {kRedShift, 8}, {kGreenShift, 8}, {kBlueShift, 8}) {}

CPixelFormat::CPixelFormat(int bits, Channel r, Channel g, Channel b)
    : bitsPerPixel(bits), red(r), green(g), blue(b), bytesPerPixel(0), native(false) {
    Prepare();
}

void CPixelFormat::Prepare() {
    bytesPerPixel = (bitsPerPixel + 7) / 8;
    native = bitsPerPixel == 32 && red.offset == kRedShift && red.length == 8 &&
             green.offset == kGreenShift && green.length == 8 && blue.offset == kBlueShift &&
             blue.length == 8;
}

// Only whole-byte pixels of 2 to 4 bytes, channels of 1 to 8 bits that fit the pixel
// and do not overlap; anything else would put wrong bits on the panel.
bool CPixelFormat::IsValid() const {
    if (bitsPerPixel != 16 && bitsPerPixel != 24 && bitsPerPixel != 32) return false;
    for (const Channel* channel : {&red, &green, &blue}) {
        if (channel->length < 1 || channel->length > 8) return false;
        if (channel->offset + channel->length > unsigned(bitsPerPixel)) return false;
    }
    return (Mask(red) & Mask(green)) == 0 && (Mask(red) & Mask(blue)) == 0 &&
           (Mask(green) & Mask(blue)) == 0;
}

bool CPixelFormat::FromDevice(const fb_var_screeninfo& info, CPixelFormat& format) {
    // grayscale above 1 is a FOURCC code: the bitfields then mean nothing.
    if (info.grayscale > 1) return false;
    if (info.red.msb_right || info.green.msb_right || info.blue.msb_right) return false;
    CPixelFormat candidate(int(info.bits_per_pixel), {info.red.offset, info.red.length},
                           {info.green.offset, info.green.length},
                           {info.blue.offset, info.blue.length});
    // Old 32-bit drivers leave every bitfield at zero and mean the usual XRGB8888.
    if (info.bits_per_pixel == 32 && IsUnset(info.red) && IsUnset(info.green) &&
        IsUnset(info.blue)) {
        candidate = CPixelFormat();
    }
    if (!candidate.IsValid()) return false;
    format = candidate;
    return true;
}

uint32_t CPixelFormat::Encode(uint32_t colour) const {
    return Packer(*this)(colour);
}

void CPixelFormat::EncodeRow(const uint32_t* colours, uint8_t* device, size_t count) const {
    if (native) {
        CopyRow(device, reinterpret_cast<const uint8_t*>(colours), count * 4);
        return;
    }
    const Packer pack(*this);
    if (bytesPerPixel == 4) {
        EncodeAll<4>(pack, colours, device, count);
    } else if (bytesPerPixel == 2) {
        EncodeAll<2>(pack, colours, device, count);
    } else {
        EncodeAll<3>(pack, colours, device, count);
    }
}

void CPixelFormat::ReadRaw(const uint8_t* device, uint32_t* raw, size_t count) const {
    if (bytesPerPixel == 4) {
        CopyRow(reinterpret_cast<uint8_t*>(raw), device, count * 4);
    } else if (bytesPerPixel == 2) {
        ReadAll<2>(device, raw, count);
    } else {
        ReadAll<3>(device, raw, count);
    }
}

void CPixelFormat::WriteRaw(const uint32_t* raw, uint8_t* device, size_t count) const {
    if (bytesPerPixel == 4) {
        CopyRow(device, reinterpret_cast<const uint8_t*>(raw), count * 4);
    } else if (bytesPerPixel == 2) {
        WriteAll<2>(raw, device, count);
    } else {
        WriteAll<3>(raw, device, count);
    }
}

}  // namespace Vantor
