#include "support/orf_bytes.h"

namespace mw::test {

OrfBytes& OrfBytes::chunk(std::int32_t type, const ByteWriter& content) {
    ByteWriter w;
    w.i32(type);
    w.i32(static_cast<std::int32_t>(content.size()));
    bytes.insert(bytes.end(), w.bytes().begin(), w.bytes().end());
    bytes.insert(bytes.end(), content.bytes().begin(), content.bytes().end());
    return *this;
}

OrfBytes& OrfBytes::header(std::int32_t version, std::int32_t vertices, std::int32_t faces) {
    ByteWriter w;
    w.i32(version);
    w.i32(vertices);
    w.i32(faces);
    return chunk(5, w);
}

OrfBytes& OrfBytes::vertices(const std::vector<Vector3>& positions) {
    ByteWriter w;
    for (auto p : positions)
        w.vec3(p);
    return chunk(1, w);
}

OrfBytes& OrfBytes::textures(const std::vector<std::string>& names) {
    ByteWriter w;
    w.i32(static_cast<std::int32_t>(names.size()));
    for (const auto& n : names) {
        w.raw(n);
        w.u8(0);
    }
    return chunk(4, w);
}

OrfBytes& OrfBytes::faces(const std::vector<RoomFaceSpec>& faces) {
    ByteWriter w;
    for (const auto& f : faces) {
        w.u8(4);
        w.i32(static_cast<std::int32_t>(f.corners.size()));
        w.vec3(f.normal);
        w.u16(static_cast<std::uint16_t>(static_cast<std::int16_t>(f.texture)));
        for (std::size_t c = 0; c < f.corners.size(); ++c) {
            w.u16(static_cast<std::uint16_t>(static_cast<std::int16_t>(f.corners[c])));
            w.f32(static_cast<float>(c));
            w.f32(0.5f);
            for (int i = 0; i < 5; ++i)
                w.u32(0);
        }
    }
    return chunk(2, w);
}

OrfBytes& OrfBytes::end() {
    ByteWriter w;
    w.i32(3);
    w.i32(4);
    bytes.insert(bytes.end(), w.bytes().begin(), w.bytes().end());
    return *this;
}

OrfBytes OrfBytes::Room(const std::vector<Vector3>& positions,
                        const std::vector<RoomFaceSpec>& faces,
                        const std::vector<std::string>& textures) {
    OrfBytes room;
    room.header(4, static_cast<std::int32_t>(positions.size()),
                static_cast<std::int32_t>(faces.size()));
    room.vertices(positions).textures(textures).faces(faces).end();
    return room;
}

std::vector<RoomFaceSpec> CubeFaces(int first) {
    const int sides[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                             {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    const Vector3 normals[6] = {{0, 0, -1}, {0, 0, 1},  {0, -1, 0},
                                {0, 1, 0},  {-1, 0, 0}, {1, 0, 0}};
    std::vector<RoomFaceSpec> faces;
    for (int f = 0; f < 6; ++f) {
        RoomFaceSpec face;
        for (int c : sides[f])
            face.corners.push_back(first + c);
        face.texture = 0;
        face.normal = Scale(normals[f], 2.0f);
        faces.push_back(face);
    }
    return faces;
}

std::vector<Vector3> CubeCorners(Vector3 centre, float half) {
    std::vector<Vector3> corners;
    for (int i = 0; i < 8; ++i) {
        corners.push_back({centre.X + (i & 1 ? half : -half), centre.Y + (i & 2 ? half : -half),
                           centre.Z + (i & 4 ? half : -half)});
    }
    return corners;
}

}  // namespace mw::test
