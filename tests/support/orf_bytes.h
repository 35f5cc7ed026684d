// Builds room files byte by byte for the room importer's tests.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/byte_cursor.h"

namespace mw::test {

struct RoomFaceSpec {
    std::vector<int> corners;
    int texture = -1;
    Vector3 normal{0, 0, 1};
};

class OrfBytes {
  public:
    OrfBytes& chunk(std::int32_t type, const ByteWriter& content);
    OrfBytes& header(std::int32_t version, std::int32_t vertices, std::int32_t faces);
    OrfBytes& vertices(const std::vector<Vector3>& positions);
    OrfBytes& textures(const std::vector<std::string>& names);
    OrfBytes& faces(const std::vector<RoomFaceSpec>& faces);
    OrfBytes& end();

    // A whole room: header, vertices, textures, faces and the end chunk.
    static OrfBytes Room(const std::vector<Vector3>& positions,
                         const std::vector<RoomFaceSpec>& faces,
                         const std::vector<std::string>& textures = {"Rainbow Texture"});

    std::vector<std::uint8_t> bytes;
};

// The six quads of an axis-aligned cube from `first` on (8 vertices from index `first`).
std::vector<RoomFaceSpec> CubeFaces(int first);
std::vector<Vector3> CubeCorners(Vector3 centre, float half);

}  // namespace mw::test
