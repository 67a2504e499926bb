// SPDX-License-Identifier: MIT
#include "vantor/PixelFormat.h"

#include <linux/fb.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>

#include "Packed24.h"
#include "RowLoop.h"

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

// The same packing with the 5-6-5 shifts known at compile time: with fewer live
// registers and immediate shifts the 16-bit rows run about a third faster.
template <unsigned RedUp, unsigned GreenUp, unsigned BlueUp>
struct Packer565 {
    uint32_t operator()(uint32_t colour) const {
        return Move<19, RedUp>(colour, 0x1Fu) | Move<10, GreenUp>(colour, 0x3Fu) |
               Move<3, BlueUp>(colour, 0x1Fu);
    }
    // The channel's bits from bit From to bit To in one shift and one mask.
    template <unsigned From, unsigned To>
    static uint32_t Move(uint32_t colour, uint32_t bits) {
        return (From >= To ? colour >> (From - To) : colour << (To - From)) & (bits << To);
    }
};

// 8-bit channels in any byte order, shifts known at compile time. For packed 24-bit
// pixels `kOrder` says which byte of a colour each device byte takes (see Packed24.h).
template <unsigned RedUp, unsigned GreenUp, unsigned BlueUp>
struct Packer888 {
    static constexpr int kOrder = 2 << RedUp / 4 | 1 << GreenUp / 4;

    uint32_t operator()(uint32_t colour) const {
        return (colour >> 16 & 0xFFu) << RedUp | (colour >> 8 & 0xFFu) << GreenUp |
               (colour & 0xFFu) << BlueUp;
    }
};

bool Is888(const CPixelFormat& f, int bits, unsigned red, unsigned green, unsigned blue) {
    return f.bitsPerPixel == bits && f.red.offset == red && f.red.length == 8 &&
           f.green.offset == green && f.green.length == 8 && f.blue.offset == blue &&
           f.blue.length == 8;
}

bool Is565(const CPixelFormat& f, unsigned redOffset, unsigned blueOffset) {
    return f.bitsPerPixel == 16 && f.red.offset == redOffset && f.red.length == 5 &&
           f.green.offset == 5 && f.green.length == 6 && f.blue.offset == blueOffset &&
           f.blue.length == 5;
}

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
// or background buffer and screen memory), which the compiler turns into vector code.
// A row that does not end on a block boundary ends with one block overlapping the one
// before, which writes those pixels again with the same bytes instead of leaving up to
// 15 to a scalar loop; only rows shorter than a block go pixel by pixel.
const size_t kBlock = 16;
// 16- and 32-bit rows go in blocks of 32, which fill whole 64-byte vector stores and
// measured a tenth faster on 16-bit screens; packed 24-bit rows stay at 16 (four
// groups of three words), where 32 measured slower.
template <int Bytes>
constexpr size_t kBlockOf = Bytes == 3 ? kBlock : 2 * kBlock;

using Packed24::kLittleEndian;

// A 24-bit block of 8-bit channels is one shuffle of the colours themselves; other
// channel widths are packed first.
template <typename Pack>
[[gnu::always_inline]] inline void PackColours24(const Pack& pack, const uint32_t* colours,
                                                 uint8_t* device) {
    uint32_t values[kBlock];
    for (size_t k = 0; k < kBlock; ++k) values[k] = pack(colours[k]);
    Packed24::Pack(values, device);
}

template <unsigned R, unsigned G, unsigned B>
[[gnu::always_inline]] inline void PackColours24(const Packer888<R, G, B>&, const uint32_t* colours,
                                                 uint8_t* device) {
    Packed24::Pack<Packer888<R, G, B>::kOrder>(colours, device);
}

// One block of kBlock pixels each.
template <int Bytes, typename Pack>
[[gnu::always_inline]] inline void EncodeBlock(const Pack& pack, const uint32_t* __restrict colours,
                                               uint8_t* __restrict device) {
    if (Bytes == 3 && kLittleEndian) {
        PackColours24(pack, colours, device);
    } else {
        for (size_t k = 0; k < kBlockOf<Bytes>; ++k)
            Store<Bytes>(device + k * Bytes, pack(colours[k]));
    }
}

template <int Bytes>
[[gnu::always_inline]] inline void ReadBlock(const uint8_t* __restrict device,
                                             uint32_t* __restrict raw) {
    if (Bytes == 3 && kLittleEndian) {
        Packed24::Spread(device, reinterpret_cast<uint8_t*>(raw));
    } else {
        for (size_t k = 0; k < kBlockOf<Bytes>; ++k) raw[k] = Load<Bytes>(device + k * Bytes);
    }
}

template <int Bytes>
[[gnu::always_inline]] inline void WriteBlock(const uint32_t* __restrict raw,
                                              uint8_t* __restrict device) {
    if (Bytes == 3 && kLittleEndian) {
        Packed24::Pack(raw, device);
    } else {
        for (size_t k = 0; k < kBlockOf<Bytes>; ++k) Store<Bytes>(device + k * Bytes, raw[k]);
    }
}

// Pixels from the start of a row to the first place where a whole block stored there
// (`Bytes` a pixel) fills its own vector-sized stretch of memory, or 0 when whole pixels
// never get there (a 24-bit block is 48 bytes). A first block at 0 covers them; the
// blocks after it then store without straddling cache lines, which on an unaligned row
// saves about a fifth.
template <int StoreBytes, int Bytes>
[[gnu::always_inline]] inline size_t AlignedStart(const void* target) {
    const size_t blockBytes = kBlockOf<Bytes> * StoreBytes;
    if ((blockBytes & (blockBytes - 1)) != 0) return 0;
    const size_t gap = (0 - reinterpret_cast<uintptr_t>(target)) & (blockBytes - 1);
    return gap % StoreBytes == 0 ? gap / StoreBytes : 0;
}

template <int Bytes, typename Pack>
[[gnu::always_inline]] inline void EncodeAll(const Pack& pack, const uint32_t* __restrict colours,
                                             uint8_t* __restrict device, size_t count) {
    const Pack local = pack;
    if (count < kBlockOf<Bytes>) {
        for (size_t i = 0; i < count; ++i) Store<Bytes>(device + i * Bytes, local(colours[i]));
        return;
    }
    const size_t start = AlignedStart<Bytes, Bytes>(device);
    if (start != 0) EncodeBlock<Bytes>(local, colours, device);
    const uint32_t* from = colours + start;
    uint8_t* to = device + start * Bytes;
    const size_t rest = count - start;
    for (size_t i = 0; i + kBlockOf<Bytes> <= rest; i += kBlockOf<Bytes>) {
        EncodeBlock<Bytes>(local, from + i, to + i * Bytes);
    }
    const size_t last = count - kBlockOf<Bytes>;
    if (rest % kBlockOf<Bytes> != 0)
        EncodeBlock<Bytes>(local, colours + last, device + last * Bytes);
}

template <int Bytes>
[[gnu::always_inline]] inline void ReadAll(const uint8_t* __restrict device,
                                           uint32_t* __restrict raw, size_t count) {
    if (count < kBlockOf<Bytes>) {
        for (size_t i = 0; i < count; ++i) raw[i] = Load<Bytes>(device + i * Bytes);
        return;
    }
    const size_t start = AlignedStart<4, Bytes>(raw);
    if (start != 0) ReadBlock<Bytes>(device, raw);
    const uint8_t* from = device + start * Bytes;
    uint32_t* to = raw + start;
    const size_t rest = count - start;
    for (size_t i = 0; i + kBlockOf<Bytes> < rest; i += kBlockOf<Bytes>) {
        ReadBlock<Bytes>(from + i * Bytes, to + i);
    }
    const size_t last = count - kBlockOf<Bytes>;
    ReadBlock<Bytes>(device + last * Bytes, raw + last);
}

template <int Bytes>
[[gnu::always_inline]] inline void WriteAll(const uint32_t* __restrict raw,
                                            uint8_t* __restrict device, size_t count) {
    if (count < kBlockOf<Bytes>) {
        for (size_t i = 0; i < count; ++i) Store<Bytes>(device + i * Bytes, raw[i]);
        return;
    }
    const size_t start = AlignedStart<Bytes, Bytes>(device);
    if (start != 0) WriteBlock<Bytes>(raw, device);
    const uint32_t* from = raw + start;
    uint8_t* to = device + start * Bytes;
    const size_t rest = count - start;
    for (size_t i = 0; i + kBlockOf<Bytes> <= rest; i += kBlockOf<Bytes>)
        WriteBlock<Bytes>(from + i, to + i * Bytes);
    const size_t last = count - kBlockOf<Bytes>;
    if (rest % kBlockOf<Bytes> != 0) WriteBlock<Bytes>(raw + last, device + last * Bytes);
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
    if (bytes == 0) return;  // an empty row may come with null pointers
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

VANTOR_ROW_LOOP void CPixelFormat::EncodeRow(const uint32_t* colours, uint8_t* device,
                                             size_t count) const {
    if (native) {
        CopyRow(device, reinterpret_cast<const uint8_t*>(colours), count * 4);
        return;
    }
    const Packer pack(*this);
    if (Is565(*this, 11, 0)) {
        EncodeAll<2>(Packer565<11, 5, 0>(), colours, device, count);
    } else if (Is565(*this, 0, 11)) {
        EncodeAll<2>(Packer565<0, 5, 11>(), colours, device, count);
    } else if (Is888(*this, 24, 16, 8, 0)) {
        EncodeAll<3>(Packer888<16, 8, 0>(), colours, device, count);
    } else if (Is888(*this, 24, 0, 8, 16)) {
        EncodeAll<3>(Packer888<0, 8, 16>(), colours, device, count);
    } else if (Is888(*this, 32, 0, 8, 16)) {
        EncodeAll<4>(Packer888<0, 8, 16>(), colours, device, count);
    } else if (Is888(*this, 32, 8, 16, 24)) {
        EncodeAll<4>(Packer888<8, 16, 24>(), colours, device, count);
    } else if (bytesPerPixel == 4) {
        EncodeAll<4>(pack, colours, device, count);
    } else if (bytesPerPixel == 2) {
        EncodeAll<2>(pack, colours, device, count);
    } else {
        EncodeAll<3>(pack, colours, device, count);
    }
}

VANTOR_ROW_LOOP void CPixelFormat::ReadRaw(const uint8_t* device, uint32_t* raw,
                                           size_t count) const {
    if (bytesPerPixel == 4) {
        CopyRow(reinterpret_cast<uint8_t*>(raw), device, count * 4);
    } else if (bytesPerPixel == 2) {
        ReadAll<2>(device, raw, count);
    } else {
        ReadAll<3>(device, raw, count);
    }
}

VANTOR_ROW_LOOP void CPixelFormat::WriteRaw(const uint32_t* raw, uint8_t* device,
                                            size_t count) const {
    if (bytesPerPixel == 4) {
        CopyRow(device, reinterpret_cast<const uint8_t*>(raw), count * 4);
    } else if (bytesPerPixel == 2) {
        WriteAll<2>(raw, device, count);
    } else {
        WriteAll<3>(raw, device, count);
    }
}

}  // namespace Vantor
