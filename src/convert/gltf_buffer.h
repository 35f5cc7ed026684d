// The binary buffer of a glTF file being written, with its buffer views, accessors and
// meshes as JSON text.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include <nlohmann/json.hpp>

namespace mw::gltf {

inline constexpr int kFloat = 5126, kUnsignedInt = 5125;
inline constexpr int kArrayBuffer = 34962, kElementArrayBuffer = 34963;

// The binary buffer, its buffer views and accessors, and the meshes that use them. There are
// thousands of these in a large model, so they are written as JSON text directly rather than
// built as objects.
class BufferBuilder {
  public:
    // Room for `bytes` bytes of buffer, and `front` bytes before it for what will precede
    // the buffer in the file (untouched memory until then costs nothing).
    void Reserve(std::size_t bytes, std::size_t front) {
        if (data_ == nullptr) front_ = front;
        Grow(bytes);
    }

    // Room for `bytes` bytes at a 4-byte boundary; returns where it starts.
    std::size_t Allocate(std::size_t bytes) {
        // Not cleared: the caller fills every byte it asked for.
        const std::size_t offset = (size_ + 3) / 4 * 4;
        Grow(offset + bytes);
        std::fill(Base() + size_, Base() + offset, std::uint8_t{0});
        size_ = offset + bytes;
        return offset;
    }

    // The buffer's first byte, for writing what was allocated (until the next Allocate).
    std::uint8_t* Data() { return Base(); }

    // Copies `value` into the buffer at `offset` (a fixed size, so the copy is inlined).
    template <typename T>
    void Put(std::size_t offset, const T& value) {
        static_assert(std::is_trivially_copyable_v<T>);
        std::memcpy(Base() + offset, &value, sizeof(T));
    }

    void Put(std::size_t offset, const void* values, std::size_t bytes) {
        std::memcpy(Base() + offset, values, bytes);
    }

    std::span<const std::uint8_t> Bytes(std::size_t offset, std::size_t bytes) const {
        return {Base() + offset, bytes};
    }

    // A buffer view over bytes already in the buffer.
    int ViewAt(std::size_t offset, std::size_t bytes, std::optional<int> target) {
        Separate(views_, viewCount_);
        views_ += "{\"buffer\":0,\"byteOffset\":" + std::to_string(offset) +
                  ",\"byteLength\":" + std::to_string(bytes);
        if (target) views_ += ",\"target\":" + std::to_string(*target);
        views_ += '}';
        return viewCount_++;
    }

    int View(std::span<const std::uint8_t> bytes, std::optional<int> target) {
        const std::size_t offset = Allocate(bytes.size());
        if (!bytes.empty()) Put(offset, bytes.data(), bytes.size());
        return ViewAt(offset, bytes.size(), target);
    }

    // An accessor over a view; `least` and `most` give its bounds when not empty.
    int AccessorOf(int view, int componentType, const char* type, int count,
                   std::span<const float> least = {}, std::span<const float> most = {}) {
        Separate(accessors_, accessorCount_);
        accessors_ += "{\"bufferView\":" + std::to_string(view) +
                      ",\"componentType\":" + std::to_string(componentType) +
                      ",\"count\":" + std::to_string(count) + ",\"type\":\"" + type + '"';
        if (!least.empty()) {
            accessors_ += ",\"min\":";
            Numbers(accessors_, least);
            accessors_ += ",\"max\":";
            Numbers(accessors_, most);
        }
        accessors_ += '}';
        return accessorCount_++;
    }

    template <typename T>
    int Accessor(const std::vector<T>& values, int componentType, const char* type, int count,
                 std::optional<int> target, bool minMax) {
        const auto bytes = std::as_bytes(std::span(values));
        const int view =
            View({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}, target);
        std::vector<float> least, most;
        if (minMax) {
            const std::size_t n = values.size() / static_cast<std::size_t>(count);
            for (std::size_t c = 0; c < n; ++c) {
                auto lo = values[c], hi = values[c];
                for (std::size_t i = c; i < values.size(); i += n) {
                    lo = std::min(lo, values[i]);
                    hi = std::max(hi, values[i]);
                }
                least.push_back(static_cast<float>(lo));
                most.push_back(static_cast<float>(hi));
            }
        }
        return AccessorOf(view, componentType, type, count, least, most);
    }

    std::span<const std::uint8_t> bin() const { return {Base(), size_}; }

    // One piece of memory: `head`, then the buffer padded to 4 bytes. The head goes into the
    // room kept in front when it fits (no copy of the buffer), else both are copied. The
    // builder is spent afterwards.
    struct Whole {
        std::unique_ptr<std::uint8_t[]> storage;
        std::size_t first = 0, size = 0;
    };
    Whole TakeWithHead(std::span<const std::uint8_t> head) {
        const std::size_t padded = (size_ + 3) / 4 * 4;
        Grow(padded);
        std::fill(Base() + size_, Base() + padded, std::uint8_t{0});
        if (head.size() <= front_) {
            const std::size_t first = front_ - head.size();
            std::memcpy(data_.get() + first, head.data(), head.size());
            return {std::move(data_), first, head.size() + padded};
        }
        std::unique_ptr<std::uint8_t[]> whole(new std::uint8_t[head.size() + padded]);
        std::memcpy(whole.get(), head.data(), head.size());
        std::memcpy(whole.get() + head.size(), Base(), padded);
        return {std::move(whole), 0, head.size() + padded};
    }

    // A mesh (its JSON text) that uses the accessors; returns its index.
    int AddMesh(const std::string& text) {
        Separate(meshes_, meshCount_);
        meshes_ += text;
        return meshCount_++;
    }

    // `doc` as text with the meshes, accessors and buffer views added.
    std::string Dump(const nlohmann::json& doc, int indent) const {
        std::string text = doc.dump(indent);
        text.pop_back();  // the closing brace of the document
        if (meshCount_ > 0) text += ",\"meshes\":[" + meshes_ + "]";
        if (accessorCount_ > 0) text += ",\"accessors\":[" + accessors_ + "]";
        text += ",\"bufferViews\":[" + views_ + "]}";
        return text;
    }

  private:
    // A JSON array of floats, each in the shortest form that reads back exactly.
    static void Numbers(std::string& text, std::span<const float> values) {
        text += '[';
        for (std::size_t i = 0; i < values.size(); ++i) {
            char number[32];
            const auto end = std::to_chars(number, number + sizeof number, values[i]).ptr;
            if (i > 0) text += ',';
            text.append(number, end);
        }
        text += ']';
    }

    static void Separate(std::string& list, int count) {
        if (count > 0) list += ',';
    }

    std::uint8_t* Base() const { return data_.get() + front_; }

    void Grow(std::size_t capacity) {
        if (capacity <= capacity_ && data_ != nullptr) return;
        capacity = std::max(capacity, 2 * capacity_);
        std::unique_ptr<std::uint8_t[]> grown(new std::uint8_t[front_ + capacity]);
        if (size_ > 0) std::memcpy(grown.get() + front_, Base(), size_);
        data_ = std::move(grown);
        capacity_ = capacity;
    }

    std::unique_ptr<std::uint8_t[]> data_;
    std::size_t front_ = 0, size_ = 0, capacity_ = 0;
    std::string views_, accessors_, meshes_;
    int viewCount_ = 0, accessorCount_ = 0, meshCount_ = 0;
};

}  // namespace mw::gltf
