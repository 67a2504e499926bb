#include "vantor/BitmapFont.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace Vantor {

namespace {

const char kMagic[] = "tinyfont";  // compared with its terminating zero

// Closes the font file on every way out of ReadFont, the throwing ones included.
class FileCloser {
  public:
    explicit FileCloser(int descriptor) : fd(descriptor) {}
    ~FileCloser() {
        if (fd >= 0) close(fd);
    }
    int fd;
};

// One read request; a short read is a failure, never retried.
bool ReadExactly(int fd, void* buffer, size_t size) {
    const ssize_t got = read(fd, buffer, size);
    return got >= 0 && static_cast<size_t>(got) == size;
}

// The tables must be describable by a 32-bit byte count, or a crafted header could
// make us allocate less than we later index.
bool FitsIn32Bits(const CFontHeader& h) {
    const int64_t bitmapBytes = int64_t(h.glyphCount) * h.glyphHeight * h.glyphWidth;
    const int64_t codeBytes = int64_t(h.glyphCount) * 4;
    return bitmapBytes <= INT32_MAX && codeBytes <= INT32_MAX;
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
    FileCloser file(open(fileName, O_RDONLY));
    if (file.fd <= 0) throw std::runtime_error("Cannot open font file");

    CFontHeader loaded;
    if (!ReadExactly(file.fd, &loaded, sizeof(loaded)) ||
        std::memcmp(loaded.magic, kMagic, sizeof(kMagic)) != 0 || loaded.glyphCount <= 0 ||
        loaded.glyphWidth <= 0 || loaded.glyphHeight <= 0 || !FitsIn32Bits(loaded)) {
        throw std::runtime_error("Cannot read font");
    }
    const size_t count = static_cast<size_t>(loaded.glyphCount);
    const size_t bitmapBytes = count * loaded.glyphHeight * loaded.glyphWidth;

    std::unique_ptr<int32_t[]> codes(new int32_t[count]);
    if (!ReadExactly(file.fd, codes.get(), count * sizeof(int32_t))) {
        throw std::runtime_error("Unable to read glyph codes");
    }
    std::unique_ptr<unsigned char[]> bitmaps(new unsigned char[bitmapBytes]);
    if (!ReadExactly(file.fd, bitmaps.get(), bitmapBytes)) {
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
    std::fill(std::begin(indexOfByte), std::end(indexOfByte), -1);
    if (pGlyphCodes == nullptr) return;
    for (int i = header.glyphCount - 1; i >= 0; --i) {
        const int32_t code = pGlyphCodes[i];
        if (code >= 0 && code < 256) indexOfByte[code] = i;
    }
}

int CBitmapFont::getIndexFromCode(int code) const {
    if (code >= 0 && code < 256) return indexOfByte[code];
    if (code < 0 || header.glyphCount < 1 || pGlyphCodes == nullptr) return -1;
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
