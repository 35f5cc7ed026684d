// A bounds-checked little-endian reader over a view of bytes, and the matching writer.
// A read past the end fails, leaves the target zeroed and makes the reader fail for good,
// so that a handler can read a run of fields and check once.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "math/vector.h"

namespace mw {

class ByteReader {
  public:
    explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    bool ok() const { return ok_; }
    void fail() { ok_ = false; }
    std::size_t pos() const { return pos_; }
    std::size_t size() const { return bytes_.size(); }
    std::size_t remaining() const { return ok_ ? bytes_.size() - pos_ : 0; }

    // True when `count` items of `itemSize` bytes each can still be read; a negative count
    // or one that runs past the data fails the reader.
    bool canHold(std::int64_t count, std::size_t itemSize) {
        if (count < 0 ||
            (itemSize != 0 && static_cast<std::uint64_t>(count) > remaining() / itemSize)) {
            ok_ = false;
        }
        return ok_;
    }

    bool seek(std::size_t pos) {
        if (!ok_ || pos > bytes_.size()) return ok_ = false;
        pos_ = pos;
        return true;
    }
    bool skip(std::size_t n) { return ok_ && n <= remaining() ? seek(pos_ + n) : (ok_ = false); }

    std::span<const std::uint8_t> take(std::size_t n) {
        if (!ok_ || n > remaining()) {
            ok_ = false;
            return {};
        }
        auto s = bytes_.subspan(pos_, n);
        pos_ += n;
        return s;
    }

    std::uint8_t u8() {
        if (!ok_ || pos_ >= bytes_.size()) return failed<std::uint8_t>();
        return bytes_[pos_++];
    }
    std::uint16_t u16() {
        if (!ok_ || bytes_.size() - pos_ < 2) return failed<std::uint16_t>();
        const std::uint16_t v = static_cast<std::uint16_t>(bytes_[pos_] | bytes_[pos_ + 1] << 8);
        pos_ += 2;
        return v;
    }
    std::uint32_t u32() {
        if (!ok_ || bytes_.size() - pos_ < 4) return failed<std::uint32_t>();
        std::uint32_t v;
        std::memcpy(&v, bytes_.data() + pos_, 4);
        pos_ += 4;
        return FromLittleEndian(v);
    }
    std::int32_t i32() { return static_cast<std::int32_t>(u32()); }
    float f32() { return std::bit_cast<float>(u32()); }
    Vector3 vec3() {
        Vector3 v;
        if (!ok_ || bytes_.size() - pos_ < 12) return failed<Vector3>();
        v.X = std::bit_cast<float>(FromLittleEndian(Word(pos_)));
        v.Y = std::bit_cast<float>(FromLittleEndian(Word(pos_ + 4)));
        v.Z = std::bit_cast<float>(FromLittleEndian(Word(pos_ + 8)));
        pos_ += 12;
        return v;
    }
    // Copies n little-endian 32-bit words into `out` (records made only of such words).
    bool words(void* out, std::size_t n) {
        if (!ok_ || n > (bytes_.size() - pos_) / 4) return ok_ = false;
        if constexpr (std::endian::native == std::endian::little) {
            std::memcpy(out, bytes_.data() + pos_, 4 * n);
        } else {
            auto* w = static_cast<std::uint32_t*>(out);
            for (std::size_t i = 0; i < n; ++i)
                w[i] = FromLittleEndian(Word(pos_ + 4 * i));
        }
        pos_ += 4 * n;
        return true;
    }
    // A text that ends at the next NUL, which the reader steps over; false (and the reader
    // failed) when no NUL comes before the end.
    bool nulText(std::string& out) {
        if (!ok_) return false;
        const auto* start = bytes_.data() + pos_;
        const auto* nul =
            static_cast<const std::uint8_t*>(std::memchr(start, 0, bytes_.size() - pos_));
        if (nul == nullptr) return ok_ = false;
        if (nul == start) {
            out.clear();  // most texts of a table's pages are empty
        } else {
            out.assign(reinterpret_cast<const char*>(start), static_cast<std::size_t>(nul - start));
        }
        pos_ += out.size() + 1;
        return true;
    }
    std::string text(std::size_t n) {
        auto s = take(n);
        return std::string(s.begin(), s.end());
    }

  private:
    template <typename T>
    T failed() {
        ok_ = false;
        return T{};
    }
    std::uint32_t Word(std::size_t at) const {
        std::uint32_t v;
        std::memcpy(&v, bytes_.data() + at, 4);
        return v;
    }
    static std::uint32_t FromLittleEndian(std::uint32_t v) {
        if constexpr (std::endian::native == std::endian::little) return v;
        return (v >> 24) | ((v >> 8) & 0xFF00u) | ((v << 8) & 0xFF0000u) | (v << 24);
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t pos_ = 0;
    bool ok_ = true;
};

class ByteWriter {
  public:
    const std::vector<std::uint8_t>& bytes() const { return bytes_; }
    std::vector<std::uint8_t> release() { return std::move(bytes_); }
    std::size_t size() const { return bytes_.size(); }
    void reserve(std::size_t n) { bytes_.reserve(n); }

    void u8(std::uint8_t v) { bytes_.push_back(v); }
    void u16(std::uint16_t v) {
        u8(static_cast<std::uint8_t>(v));
        u8(static_cast<std::uint8_t>(v >> 8));
    }
    void u32(std::uint32_t v) {
        for (int i = 0; i < 4; ++i)
            u8(static_cast<std::uint8_t>(v >> (8 * i)));
    }
    void i32(std::int32_t v) { u32(static_cast<std::uint32_t>(v)); }
    void f32(float v) { u32(std::bit_cast<std::uint32_t>(v)); }
    void vec3(Vector3 v) {
        f32(v.X);
        f32(v.Y);
        f32(v.Z);
    }
    void raw(std::string_view s) {
        if (s.empty()) return;
        const std::size_t at = bytes_.size();
        bytes_.resize(at + s.size());
        std::memcpy(bytes_.data() + at, s.data(), s.size());
    }

    // Overwrites four bytes already written, for length fields patched after the content.
    void patchI32(std::size_t at, std::int32_t v) {
        for (std::size_t i = 0; i < 4; ++i) {
            bytes_[at + i] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(v) >> (8 * i));
        }
    }

  private:
    std::vector<std::uint8_t> bytes_;
};

}  // namespace mw
