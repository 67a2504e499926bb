// SPDX-License-Identifier: MIT
#pragma once

// Sixteen 24-bit pixels are exactly three 16-byte vectors, and sixteen 32-bit words four.
// On a little-endian CPU a pixel's three bytes are the low three of its word, so a block
// moves between the two forms by picking bytes: one constant byte shuffle per vector,
// which x86-64 (from SSSE3 on), NEON and other vector units do in an instruction or two.
// Written with the compilers' generic vector extension (GCC 12 and clang both know
// __builtin_shufflevector) rather than one CPU's intrinsics, so the same source builds
// everywhere; the same work written with shifts of whole words compiled to scalar code
// and cost three to four times the memory floor. Where there is no vector unit to
// shuffle with (armhf's baseline has no NEON, 32-bit x86 no SSSE3) the compiler would
// take the shuffles apart byte by byte, four times slower than shifting whole words, so
// there the words are shifted.
//
// An order says which of a pixel's three bytes each byte of the other form takes: three
// 2-bit fields, lowest first. kKeepOrder (0, 1, 2) keeps them as they are, kSwapOrder
// (2, 1, 0) swaps the first and the last on the way.
#include <cstdint>
#include <cstring>
#include <utility>

namespace Vantor {
namespace Packed24 {

const bool kLittleEndian = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;
#if defined(__x86_64__) || defined(__SSSE3__) || defined(__aarch64__) || defined(__ARM_NEON)
const bool kByteShuffles = true;
#else
const bool kByteShuffles = false;
#endif
const int kKeepOrder = 0x24;
const int kSwapOrder = 0x06;

typedef uint8_t Lane __attribute__((vector_size(16)));
// Keeps the three bytes of each of four words, clears the fourth.
const Lane kLowThree = {255, 255, 255, 0, 255, 255, 255, 0, 255, 255, 255, 0, 255, 255, 255, 0};

constexpr int Field(int order, int byte) {
    return order >> (2 * byte) & 3;
}

// Byte j of packed vector k (of 3) belongs to pixel p = (16k + j) / 3, counted from the
// first of the two word vectors k and k + 1 it is taken from.
constexpr int PackedFrom(int k, int j, int order) {
    return (16 * k + j) / 3 * 4 + Field(order, (16 * k + j) % 3) - 16 * k;
}

// Byte j of word vector m (of 4) is byte j % 4 of pixel 4m + j / 4, counted from the first
// of the two packed vectors it is taken from (0 and 1 for m < 2, else 1 and 2). A word's
// fourth byte is taken from anywhere and masked off.
constexpr int SpreadFrom(int m, int j, int order) {
    return j % 4 == 3 ? 0 : (4 * m + j / 4) * 3 + Field(order, j % 4) - (m > 1 ? 16 : 0);
}

// Results come back through references, as everywhere a vector crosses a function: by
// value it would take an ABI that 32-bit x86 without SSE lacks.
template <int K, int Order, int... J>
[[gnu::always_inline]] inline void Packed(const Lane& a, const Lane& b, Lane& out,
                                          std::integer_sequence<int, J...>) {
    out = __builtin_shufflevector(a, b, PackedFrom(K, J, Order)...);
}

template <int M, int Order, int... J>
[[gnu::always_inline]] inline void Spread(const Lane& a, const Lane& b, Lane& out,
                                          std::integer_sequence<int, J...>) {
    out = __builtin_shufflevector(a, b, SpreadFrom(M, J, Order)...);
}

// Vectors go to and from memory one at a time: gathered in an array, GCC moved the array
// through the stack as one 64-byte value, and the CPU cannot forward four 16-byte stores
// into one wide load.
[[gnu::always_inline]] inline void LoadLane(const void* from, Lane& lane) {
    std::memcpy(&lane, from, sizeof lane);
}

[[gnu::always_inline]] inline void StoreLane(void* to, const Lane& lane) {
    std::memcpy(to, &lane, sizeof lane);
}

// A word's three bytes in the order asked for, its fourth byte 0.
template <int Order>
[[gnu::always_inline]] inline uint32_t Reorder(uint32_t word) {
    if (Order == kKeepOrder) return word & 0xFFFFFFu;
    return (word & 0xFF00u) | (word >> 16 & 0xFFu) | (word & 0xFFu) << 16;
}

[[gnu::always_inline]] inline uint32_t LoadWord(const uint8_t* from) {
    uint32_t word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

[[gnu::always_inline]] inline void StoreWord(uint8_t* to, uint32_t word) {
    std::memcpy(to, &word, sizeof word);
}

// 16 words (their fourth bytes dropped) to 48 bytes.
template <int Order = kKeepOrder>
[[gnu::always_inline]] inline void Pack(const uint32_t* __restrict words,
                                        uint8_t* __restrict packed) {
    if (!kByteShuffles) {
        // Four pixels are three words.
        for (int g = 0; g < 16; g += 4, words += 4, packed += 12) {
            const uint32_t a = Reorder<Order>(words[0]), b = Reorder<Order>(words[1]),
                           c = Reorder<Order>(words[2]), d = Reorder<Order>(words[3]);
            StoreWord(packed, a | b << 24);
            StoreWord(packed + 4, b >> 8 | c << 16);
            StoreWord(packed + 8, c >> 16 | d << 8);
        }
        return;
    }
    const auto bytes = std::make_integer_sequence<int, 16>();
    Lane v0, v1, v2, v3, out;
    LoadLane(words, v0);
    LoadLane(words + 4, v1);
    LoadLane(words + 8, v2);
    LoadLane(words + 12, v3);
    Packed<0, Order>(v0, v1, out, bytes);
    StoreLane(packed, out);
    Packed<1, Order>(v1, v2, out, bytes);
    StoreLane(packed + 16, out);
    Packed<2, Order>(v2, v3, out, bytes);
    StoreLane(packed + 32, out);
}

// 48 bytes to 16 words (64 bytes at `words`, any alignment) whose fourth byte is 0.
template <int Order = kKeepOrder>
[[gnu::always_inline]] inline void Spread(const uint8_t* __restrict packed,
                                          uint8_t* __restrict words) {
    if (!kByteShuffles) {
        for (int g = 0; g < 16; g += 4, packed += 12, words += 16) {
            const uint32_t a = LoadWord(packed), b = LoadWord(packed + 4), c = LoadWord(packed + 8);
            StoreWord(words, Reorder<Order>(a));
            StoreWord(words + 4, Reorder<Order>(a >> 24 | b << 8));
            StoreWord(words + 8, Reorder<Order>(b >> 16 | c << 16));
            StoreWord(words + 12, Reorder<Order>(c >> 8));
        }
        return;
    }
    const auto bytes = std::make_integer_sequence<int, 16>();
    Lane p0, p1, p2, out;
    LoadLane(packed, p0);
    LoadLane(packed + 16, p1);
    LoadLane(packed + 32, p2);
    Spread<0, Order>(p0, p1, out, bytes);
    StoreLane(words, out & kLowThree);
    Spread<1, Order>(p0, p1, out, bytes);
    StoreLane(words + 16, out & kLowThree);
    Spread<2, Order>(p1, p2, out, bytes);
    StoreLane(words + 32, out & kLowThree);
    Spread<3, Order>(p1, p2, out, bytes);
    StoreLane(words + 48, out & kLowThree);
}

// Four pixels of a turned transfer, which packs one quad of a panel row at a time: four
// words (a vector) to 12 bytes and back. No memory in between: a quad that went through
// a byte array came back from the stack many times slower.
typedef uint32_t Words4 __attribute__((vector_size(16)));
typedef uint64_t Halves2 __attribute__((vector_size(16)));

// The first vector of a block's shuffles, applied to one vector: its first 12 bytes are
// the quad packed, its first word vector the quad spread.
template <int Order = kKeepOrder>
[[gnu::always_inline]] inline void PackQuad(const Words4& words, uint8_t* packed) {
    Lane out;
    Packed<0, Order>(Lane(words), Lane(words), out, std::make_integer_sequence<int, 16>());
    const Halves2 halves = Halves2(out);
    const uint64_t low = halves[0];
    const uint32_t high = uint32_t(halves[1]);
    std::memcpy(packed, &low, 8);
    std::memcpy(packed + 8, &high, 4);
}

[[gnu::always_inline]] inline void SpreadQuad(const uint8_t* packed, Words4& words) {
    uint64_t low;
    uint32_t high;
    std::memcpy(&low, packed, 8);
    std::memcpy(&high, packed + 8, 4);
    const Halves2 halves = {low, high};
    Lane out;
    Spread<0, kKeepOrder>(Lane(halves), Lane(halves), out, std::make_integer_sequence<int, 16>());
    words = Words4(out & kLowThree);
}

}  // namespace Packed24
}  // namespace Vantor
