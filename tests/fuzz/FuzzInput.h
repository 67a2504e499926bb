// Turns a fuzzer's bytes into call arguments, favouring the values that break code:
// the ends of the int range, zero, one, and for floats NaN, infinities and huge values.
#ifndef VANTOR_FUZZ_FUZZINPUT_H
#define VANTOR_FUZZ_FUZZINPUT_H

#include <cstddef>
#include <cstdint>
#include <string>

class FuzzInput {
  public:
    FuzzInput(const uint8_t* data, size_t size) : data(data), size(size) {}
    bool Empty() const { return size == 0; }
    uint8_t Byte();
    uint32_t Word();
    int Int();      // an edge value or a small coordinate, now and then any int
    float Float();  // NaN, infinities, huge, negative, or a percentage
    std::string Text(size_t longest);

  private:
    const uint8_t* data;
    size_t size;
};

#endif
