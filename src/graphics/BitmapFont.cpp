// SPDX-License-Identifier: MIT
#include "vantor/BitmapFont.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <stdexcept>

#include "io/UniqueFd.h"

namespace Vantor {

namespace {

const char kMagic[] = "tinyfont";  // compared with its terminating zero

// The glyph index covers the Unicode range in pages of this many codes; 0x1100 blocks
// at most, so a page number fits 16 bits.
const size_t kPageSize = 256;
const int32_t kIndexedCodes = 0x110000;

// One read request; a short read is a failure, never retried.
bool ReadExactly(int fd, void* buffer, size_t size) {
    const ssize_t got = read(fd, buffer, size);
    return got >= 0 && static_cast<size_t>(got) == size;
}

// No display shows a character wider or taller than this; a bigger cell can only come
// from a damaged or hostile file, and refusing it keeps every product of cell sizes and
// text lengths far from overflow.
const int32_t kMaxGlyphSide = 4096;

// A font that is not a regular file (a pipe, a device) has no size to check the header
// against; real fonts are a few KiB, so its tables are bounded by this instead.
const int64_t kMaxUnsizedTables = 16 << 20;

bool IsPossible(const CFontHeader& h) {
    if (h.glyphCount <= 0 || h.glyphWidth <= 0 || h.glyphHeight <= 0) return false;
    if (h.glyphWidth > kMaxGlyphSide || h.glyphHeight > kMaxGlyphSide) return false;
    // The bitmap table must be describable by a 32-bit byte count, or a crafted header
    // could make us allocate less than we later index. The sides are capped, so the
    // 64-bit product cannot wrap.
    return int64_t(h.glyphCount) * h.glyphHeight * h.glyphWidth <= INT32_MAX;
}

// How many bytes may follow the header: what the file holds if it is a regular file.
int64_t TableBytesAvailable(int fd) {
    struct stat status;
    if (fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) return kMaxUnsizedTables;
    return status.st_size > int64_t(sizeof(CFontHeader))
               ? status.st_size - int64_t(sizeof(CFontHeader))
               : 0;
}

}  // namespace

CBitmapFont::CBitmapFont()
    : pFileName(nullptr), header(), pGlyphCodes(nullptr), pGlyphBitmaps(nullptr) {
    BuildCodeIndex();
}

CBitmapFont::CBitmapFont(const char* fileName) : CBitmapFont() {
    ReadFont(fileName);
}

CBitmapFont::~CBitmapFont() {
    delete[] pFileName;
    delete[] pGlyphCodes;
    delete[] pGlyphBitmaps;
}

// Everything is read into new tables first and swapped in only when the whole file
// has been read, so a failed load leaves the font as it was.
int CBitmapFont::ReadFont(const char* fileName) {
    if (fileName == nullptr || fileName[0] == '\0') {
        throw std::runtime_error("Undefined font file name");
    }
    // Closed on every way out, the throwing ones included.
    const UniqueFd file = UniqueFd::Open(fileName, O_RDONLY);
    if (file.Get() <= 0) throw std::runtime_error("Cannot open font file");

    CFontHeader loaded;
    if (!ReadExactly(file.Get(), &loaded, sizeof(loaded)) ||
        std::memcmp(loaded.magic, kMagic, sizeof(kMagic)) != 0 || !IsPossible(loaded)) {
        throw std::runtime_error("Cannot read font");
    }
    // A header may claim more than the file holds: such a file fails with the message
    // its short read would give, before anything of the claimed size is allocated.
    const int64_t available = TableBytesAvailable(file.Get());
    const int64_t codeBytes = int64_t(loaded.glyphCount) * 4;
    const int64_t bitmapBytes = int64_t(loaded.glyphCount) * loaded.glyphHeight * loaded.glyphWidth;
    if (codeBytes > available) throw std::runtime_error("Unable to read glyph codes");

    std::unique_ptr<int32_t[]> codes(new int32_t[loaded.glyphCount]);
    if (!ReadExactly(file.Get(), codes.get(), size_t(codeBytes))) {
        throw std::runtime_error("Unable to read glyph codes");
    }
    if (bitmapBytes > available - codeBytes) throw std::runtime_error("Unable to read glyphs");
    std::unique_ptr<unsigned char[]> bitmaps(new unsigned char[bitmapBytes]);
    if (!ReadExactly(file.Get(), bitmaps.get(), size_t(bitmapBytes))) {
        throw std::runtime_error("Unable to read glyphs");
    }
    std::unique_ptr<char[]> name(new char[std::strlen(fileName) + 1]);
    std::strcpy(name.get(), fileName);

    header = loaded;
    delete[] pGlyphCodes;
    pGlyphCodes = codes.release();
    delete[] pGlyphBitmaps;
    pGlyphBitmaps = bitmaps.release();
    delete[] pFileName;
    pFileName = name.release();
    BuildCodeIndex();
    return 0;
}

// Walking the table from the end lets the lowest index of a repeated code win, as
// the linear search does.
void CBitmapFont::BuildCodeIndex() {
    pageOfBlock.clear();
    pages.assign(kPageSize, -1);
    if (pGlyphCodes == nullptr) return;
    int32_t highest = -1;
    for (int i = 0; i < header.glyphCount; ++i) {
        if (pGlyphCodes[i] < kIndexedCodes) highest = std::max(highest, pGlyphCodes[i]);
    }
    if (highest < 0) return;
    pageOfBlock.assign(size_t(highest) / kPageSize + 1, 0);
    for (int i = header.glyphCount - 1; i >= 0; --i) {
        const int32_t code = pGlyphCodes[i];
        if (code < 0 || code >= kIndexedCodes) continue;
        uint16_t& page = pageOfBlock[size_t(code) / kPageSize];
        if (page == 0) {
            page = uint16_t(pages.size() / kPageSize);
            pages.resize(pages.size() + kPageSize, -1);
        }
        pages[size_t(page) * kPageSize + size_t(code) % kPageSize] = i;
    }
}

// Text asks only for Unicode codes, which the index holds; anything beyond is found
// the slow way.
int CBitmapFont::getIndexFromCode(int code) const {
    if (code < 0) return -1;
    const size_t block = size_t(code) / kPageSize;
    if (block < pageOfBlock.size()) {
        return pages[size_t(pageOfBlock[block]) * kPageSize + size_t(code) % kPageSize];
    }
    if (code < kIndexedCodes || header.glyphCount < 1 || pGlyphCodes == nullptr) return -1;
    for (int i = 0; i < header.glyphCount; ++i) {
        if (pGlyphCodes[i] == code) return i;
    }
    return -1;
}

unsigned char* CBitmapFont::getGlyphFromIndex(int index) const {
    if (index < 0 || index >= header.glyphCount || pGlyphBitmaps == nullptr) return nullptr;
    return pGlyphBitmaps + static_cast<size_t>(index) * header.glyphHeight * header.glyphWidth;
}

unsigned char* CBitmapFont::getGlyphFromCode(int code) const {
    const int index = getIndexFromCode(code);
    return index < 0 ? nullptr : getGlyphFromIndex(index);
}

}  // namespace Vantor
