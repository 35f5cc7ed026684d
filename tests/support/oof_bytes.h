// Builds OOF files byte by byte for reader tests, independently of the model's writer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/byte_cursor.h"
#include "model/model_data.h"

namespace mw::test {

struct RawFace {
    Vector3 normal{0, 0, 1};
    std::vector<FaceVertex> corners;
    int texture = -1;  // -1: untextured, coloured
    std::array<std::uint8_t, 3> color{10, 20, 30};
};

struct RawSub {
    int index = 0;
    int parent = -1;
    Vector3 offset;
    std::string name = "part";  // written with a terminating NUL
    std::string properties;     // written with a terminating NUL
    std::vector<Vector3> positions;
    std::vector<Vector3> normals;  // defaults to (0, 0, 1) per vertex
    std::vector<float> alphas;     // defaults to 1 per vertex; written from version 2300
    std::vector<RawFace> faces;
    std::vector<std::int32_t> skipped;
};

class OofBytes {
  public:
    explicit OofBytes(std::int32_t version = 2300, const char* id = "PSPO");

    // Appends a chunk with the given content; `length` overrides the stated length.
    OofBytes& chunk(const char* id, const ByteWriter& content,
                    std::optional<std::int32_t> length = std::nullopt);
    OofBytes& header(int subObjects, float radius = 1.0f);
    OofBytes& sub(const RawSub& s);
    OofBytes& textures(const std::vector<std::string>& storedNames);
    OofBytes& raw(std::uint8_t byte);

    // A one-triangle sub-object with the given index and parent.
    static RawSub Triangle(int index, int parent = -1);

    std::vector<std::uint8_t> bytes;

  private:
    std::int32_t version_;
};

// Writes a counted text with a NUL terminator, as files store it.
void WriteText(ByteWriter& w, const std::string& text);

}  // namespace mw::test

namespace mw::test {

// A model read from a file of one-triangle sub-objects with the given parents, with its
// draw order built.
ModelData ModelWithParents(const std::vector<int>& parents);

}  // namespace mw::test
