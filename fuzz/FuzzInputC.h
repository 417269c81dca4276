#ifndef EVALG_FUZZ_FUZZINPUTC_H
#define EVALG_FUZZ_FUZZINPUTC_H

// Turns a fuzzer's bytes into evaluator inputs. Doubles come either as raw
// bits (every double: NaN payloads, infinities, denormals, huge values) or as
// small ordinary numbers, so that the fuzzer reaches real graphs as well as
// garbage. Running out of bytes yields zeros.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

class FuzzInputC {
public:
    FuzzInputC(uint8_t const *data, size_t size) : data_(data), size_(size) {}

    uint8_t byte() { return pos_ < size_ ? data_[pos_++] : 0; }

    uint64_t bits() {
        uint64_t b = 0;
        for (int i = 0; i < 8; ++i) b = (b << 8) | byte();
        return b;
    }

    double rawDouble() {
        uint64_t b = bits();
        double v;
        std::memcpy(&v, &b, sizeof v);
        return v;
    }

    // Selector byte: a quarter raw bits, the rest a value in [-64, 64) in
    // steps of 1/64, or one of the special values.
    double value() {
        uint8_t s = byte();
        if (s < 64) return rawDouble();
        if (s < 80) {
            static double const specials[] = {0.0, -0.0, 1e300, -1e300, 1e-300, -1e-300, 1e-320,
                                              __builtin_inf(), -__builtin_inf(), __builtin_nan(""),
                                              1.0, -1.0, 0.5, 2.0, 1e9, 1e-9};
            return specials[s - 64];
        }
        int16_t v = int16_t(uint16_t(byte()) << 8 | byte());
        return v / 64.0;
    }

    // A window size: mostly modest so runs stay fast, sometimes the extremes.
    unsigned short pixels() {
        uint8_t s = byte();
        if (s < 8) return s; // 0 (invalid) to 7
        if (s < 12) return 32767;
        return static_cast<unsigned short>(1 + (uint16_t(byte()) << 8 | byte()) % 1024);
    }

    bool flag() { return byte() & 1; }

    // An input that is a text and then values: the first byte is the text's
    // length (cut to the bytes there are); rest reads what follows the text.
    static std::string textThenValues(uint8_t const *data, size_t size, FuzzInputC &rest) {
        size_t length = size ? data[0] : 0;
        if (length > size - (size ? 1 : 0)) length = size - (size ? 1 : 0);
        size_t start = size ? 1 : 0;
        rest = FuzzInputC(data + start + length, size - start - length);
        return std::string(reinterpret_cast<char const *>(data) + start, length);
    }

private:
    uint8_t const *data_;
    size_t size_;
    size_t pos_ = 0;
};

#endif
