// SPDX-License-Identifier: MIT
#pragma once

// The row loops are written once and built for baseline x86-64 (SSE2), for x86-64-v2
// (SSSE3's byte shuffle, which packed 24-bit rows need) and for the wider vectors of
// later cores, chosen when the library is loaded: with SSE2 alone a 16-bit row costs
// about a cycle a pixel, three times what memory allows, and a glyph row of 8 pixels
// goes out in four 8-byte stores instead of one 32-byte store.
// GCC only: clang binds callers in other files to a multiversioned function only when
// their declaration carries the attribute too, and ours, in the class headers, do not.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define VANTOR_ROW_LOOP \
    __attribute__((target_clones("default", "arch=x86-64-v2", "avx2", "arch=x86-64-v4")))
#else
#define VANTOR_ROW_LOOP
#endif
