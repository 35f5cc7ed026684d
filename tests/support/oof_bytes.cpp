#include "support/oof_bytes.h"

namespace mw::test {

void WriteText(ByteWriter& w, const std::string& text) {
    w.i32(static_cast<std::int32_t>(text.size() + 1));
    w.raw(text);
    w.u8(0);
}

OofBytes::OofBytes(std::int32_t version, const char* id) : version_(version) {
    ByteWriter w;
    w.raw(id);
    w.i32(version);
    bytes = w.release();
}

OofBytes& OofBytes::chunk(const char* id, const ByteWriter& content,
                          std::optional<std::int32_t> length) {
    ByteWriter w;
    w.raw(std::string_view(id, 4));
    w.i32(length.value_or(static_cast<std::int32_t>(content.size())));
    bytes.insert(bytes.end(), w.bytes().begin(), w.bytes().end());
    bytes.insert(bytes.end(), content.bytes().begin(), content.bytes().end());
    return *this;
}

OofBytes& OofBytes::header(int subObjects, float radius) {
    ByteWriter w;
    w.i32(subObjects);
    w.f32(radius);
    w.vec3({-1, -1, -1});
    w.vec3({1, 1, 1});
    w.i32(0);
    return chunk("OHDR", w);
}

OofBytes& OofBytes::sub(const RawSub& s) {
    ByteWriter w;
    w.i32(s.index);
    w.i32(s.parent);
    w.vec3({});
    w.f32(0);
    w.vec3({});
    w.vec3(s.offset);
    w.f32(1.0f);
    w.i32(0);
    w.i32(0);
    w.vec3({});
    WriteText(w, s.name);
    WriteText(w, s.properties);
    w.i32(0);
    w.i32(0);
    w.i32(static_cast<std::int32_t>(s.skipped.size()));
    for (auto v : s.skipped)
        w.i32(v);
    w.i32(static_cast<std::int32_t>(s.positions.size()));
    for (auto p : s.positions)
        w.vec3(p);
    for (std::size_t i = 0; i < s.positions.size(); ++i) {
        w.vec3(i < s.normals.size() ? s.normals[i] : Vector3{0, 0, 1});
    }
    if (version_ >= 2300) {
        for (std::size_t i = 0; i < s.positions.size(); ++i) {
            w.f32(i < s.alphas.size() ? s.alphas[i] : 1.0f);
        }
    }
    w.i32(static_cast<std::int32_t>(s.faces.size()));
    for (const RawFace& f : s.faces) {
        w.vec3(f.normal);
        w.i32(static_cast<std::int32_t>(f.corners.size()));
        w.i32(f.texture >= 0 ? 1 : 0);
        if (f.texture >= 0) {
            w.i32(f.texture);
        } else {
            for (auto c : f.color)
                w.u8(c);
        }
        for (const FaceVertex& c : f.corners) {
            w.i32(c.VertexIndex);
            w.f32(c.U);
            w.f32(c.V);
        }
        w.u32(0xAABBCCDD);
        w.u32(7);
    }
    return chunk("SOBJ", w);
}

OofBytes& OofBytes::textures(const std::vector<std::string>& storedNames) {
    ByteWriter w;
    w.i32(static_cast<std::int32_t>(storedNames.size()));
    for (const auto& n : storedNames)
        WriteText(w, n);
    return chunk("TXTR", w);
}

OofBytes& OofBytes::raw(std::uint8_t byte) {
    bytes.push_back(byte);
    return *this;
}

RawSub OofBytes::Triangle(int index, int parent) {
    RawSub s;
    s.index = index;
    s.parent = parent;
    s.name = "tri" + std::to_string(index);
    s.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    RawFace f;
    f.corners = {{0, 0, 0}, {1, 1, 0}, {2, 0, 1}};
    s.faces = {f};
    return s;
}

}  // namespace mw::test

#include <gtest/gtest.h>

#include "model/geometry.h"
#include "model/oof_reader.h"

namespace mw::test {

ModelData ModelWithParents(const std::vector<int>& parents) {
    OofBytes f;
    f.header(static_cast<int>(parents.size()));
    for (std::size_t i = 0; i < parents.size(); ++i) {
        f.sub(OofBytes::Triangle(static_cast<int>(i), parents[i]));
    }
    ModelData m;
    EXPECT_EQ(readOOF(m, f.bytes), ResultCode::Success);
    CreatePushPop(m);
    return m;
}

}  // namespace mw::test
