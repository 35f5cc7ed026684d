#include "convert/orf_writer.h"

#include <cmath>
#include <cstdio>

#include "gamedata/file_names.h"
#include "model/byte_cursor.h"
#include "model/file_io.h"
#include "model/geometry.h"

namespace mw {
namespace {

constexpr double kPi = 3.14159265358979;
constexpr std::int32_t kRoomVersion = 4;
constexpr std::size_t kMaxInt16Index = 32768;

double Sign(double v) {
    return v > 0 ? 1.0 : (v < 0 ? -1.0 : 0.0);
}

// The points of one save slot that get marker faces, in the order they are written.
std::vector<const ModelPoint*> SlotPoints(const ModelData& m, int head) {
    std::vector<const ModelPoint*> points;
    for (PointType t : kPointTypes) {
        for (const ModelPoint& p : m.Points(t)) {
            if (p.Parent == head) points.push_back(&p);
        }
    }
    return points;
}

class RoomWriter {
  public:
    RoomWriter(const ModelData& m, const OrfExportOptions& o) : m_(m), o_(o) {}

    // The file for the given slots; an empty text and the bytes, or the refusal.
    std::string Write(const std::vector<int>& slots, std::vector<std::uint8_t>& bytes);

  private:
    template <typename Fn>
    void chunk(std::int32_t type, Fn&& fn) {
        w_.i32(type);
        const std::size_t lengthAt = w_.size();
        w_.i32(0);
        fn();
        w_.patchI32(lengthAt, static_cast<std::int32_t>(w_.size() - lengthAt - 4));
    }
    void corner(std::int32_t vertex, float u, float v) {
        w_.u16(static_cast<std::uint16_t>(static_cast<std::int16_t>(vertex)));
        w_.f32(u);
        w_.f32(v);
        for (int i = 0; i < 4; ++i)
            w_.u32(0);
        w_.f32(1.0f);
    }

    const ModelData& m_;
    const OrfExportOptions& o_;
    ByteWriter w_;
};

std::string RoomWriter::Write(const std::vector<int>& slots, std::vector<std::uint8_t>& bytes) {
    std::size_t vertexCount = 0, faceCount = 0;
    for (int slot : slots) {
        for (int member : m_.MergeTable[static_cast<std::size_t>(slot)]) {
            vertexCount += m_.Sub(member).Vertices.size();
            faceCount += m_.Sub(member).Faces.size();
        }
        if (o_.SpecialPointsAsFaces) {
            const std::size_t points = SlotPoints(m_, m_.Head(slot)).size();
            vertexCount += 4 * points;
            faceCount += points;
        }
    }
    if (vertexCount > kMaxInt16Index) {
        return "The model has " + std::to_string(vertexCount) +
               " vertices; a room file can hold at most 32768.";
    }
    if (m_.Textures.size() > kMaxInt16Index - 1) {
        return "The model has too many textures for a room file.";
    }

    chunk(5, [&] {
        w_.i32(kRoomVersion);
        w_.i32(static_cast<std::int32_t>(vertexCount));
        w_.i32(static_cast<std::int32_t>(faceCount));
    });
    chunk(1, [&] {
        for (int slot : slots) {
            const Vector3 offset = WorldOffset(m_, m_.Head(slot));
            for (int member : m_.MergeTable[static_cast<std::size_t>(slot)]) {
                for (const Vertex& v : m_.Sub(member).Vertices)
                    w_.vec3(Add(v.Position, offset));
            }
            if (!o_.SpecialPointsAsFaces) continue;
            for (const ModelPoint* p : SlotPoints(m_, m_.Head(slot))) {
                for (Vector3 c :
                     MarkerCorners(Add(p->Position, offset), p->Normal, o_.SpecialFaceSize)) {
                    w_.vec3(c);
                }
            }
        }
    });
    chunk(4, [&] {
        if (m_.Textures.empty()) {
            w_.i32(1);
            w_.raw("SAMPLE TEXTURE");
            w_.u8(0);
            return;
        }
        w_.i32(static_cast<std::int32_t>(m_.Textures.size()));
        for (const Texture& t : m_.Textures) {
            w_.raw(t.GameName.empty() ? t.Name.substr(0, t.Name.find('.')) : t.GameName);
            w_.u8(0);
        }
    });
    chunk(2, [&] {
        std::int32_t base = 0;  // vertices written before the current member's
        for (int slot : slots) {
            for (int member : m_.MergeTable[static_cast<std::size_t>(slot)]) {
                const SubObject& sub = m_.Sub(member);
                std::size_t c = 0;
                for (const Face& f : sub.Faces) {
                    w_.u8(4);
                    w_.i32(f.VertexCount);
                    w_.vec3(f.Normal);
                    w_.u16(static_cast<std::uint16_t>(static_cast<std::int16_t>(f.TextureIndex)));
                    for (int k = 0; k < f.VertexCount && c < sub.Corners.size(); ++k, ++c) {
                        corner(sub.Corners[c].VertexIndex + base, sub.Corners[c].U,
                               sub.Corners[c].V);
                    }
                }
                base += sub.VertexCount();
            }
            if (!o_.SpecialPointsAsFaces) continue;
            for (const ModelPoint* p : SlotPoints(m_, m_.Head(slot))) {
                w_.u8(4);
                w_.i32(4);
                w_.vec3(p->Normal);
                w_.u16(0xFFFF);
                const float uv[4][2] = {{1, 1}, {0, 1}, {0, 0}, {1, 0}};
                for (int k = 0; k < 4; ++k)
                    corner(base + k, uv[k][0], uv[k][1]);
                base += 4;
            }
        }
    });
    w_.i32(3);
    w_.i32(4);
    bytes = w_.release();
    return {};
}

}  // namespace

std::array<Vector3, 4> MarkerCorners(Vector3 position, Vector3 normal, float faceSize) {
    const Vector3 n = Normalize(normal);
    const double nx = n.X, ny = n.Y, nz = n.Z;
    double a = nz == 0 ? Sign(-nx) * kPi / 2 : std::atan(-nx / nz);
    if (nx == 0 && nz < 0) {
        a += kPi;
    } else if (nz < 0) {
        a += Sign(-nx) * kPi;
    }
    const double r = std::sqrt(nz * nz + nx * nx);
    const double b = r == 0 ? Sign(ny) * kPi / 2 : std::atan(ny / r);
    if (std::abs(b) > kPi / 2 - kPi / 1000 && std::abs(b) <= kPi / 2 + kPi / 1000) a = 0;

    const double h = faceSize / 2.0;
    const double sa = std::sin(a), ca = std::cos(a), sb = std::sin(b), cb = std::cos(b);
    auto at = [&](double x, double y, double z) {
        return Vector3{static_cast<float>(position.X + h * x),
                       static_cast<float>(position.Y + h * y),
                       static_cast<float>(position.Z + h * z)};
    };
    return {at(sa * sb + ca, cb, sa - sb * ca), at(sa * sb - ca, cb, -sa - sb * ca),
            at(-ca - sa * sb, -cb, sb * ca - sa), at(ca - sa * sb, -cb, sb * ca + sa)};
}

std::string BuildORF(const ModelData& model, const std::vector<int>& slots,
                     const OrfExportOptions& options, std::vector<std::uint8_t>& bytes) {
    return RoomWriter(model, options).Write(slots, bytes);
}

OrfExportResult SaveORF(const ModelData& model, const std::string& path,
                        const OrfExportOptions& options) {
    OrfExportResult result;
    const auto dot = FindIgnoringCase(path, ".orf");
    if (dot == std::string::npos) {
        result.Message = "The file name must end in .orf";
        return result;
    }
    const std::string base = path.substr(0, dot);

    // One combined file, or one per save slot.
    std::vector<std::pair<std::string, std::vector<int>>> files;
    if (options.CombineRooms || model.SubObjectCount() < 2) {
        std::vector<int> all;
        for (int s = 0; s < model.SubObjectCount(); ++s)
            all.push_back(s);
        files.emplace_back(base + ".orf", all);
    } else {
        for (int s = 0; s < model.SubObjectCount(); ++s) {
            char number[16];
            std::snprintf(number, sizeof number, "%02d", s);
            files.emplace_back(base + number + ".orf", std::vector<int>{s});
        }
    }
    // Every file is built before the first is written, so a refusal writes nothing.
    std::vector<std::vector<std::uint8_t>> contents(files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        result.Message = BuildORF(model, files[i].second, options, contents[i]);
        if (!result.Message.empty()) return result;
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        result.Message = WriteFileReplacing(files[i].first, contents[i]);
        if (!result.Message.empty()) return result;
        result.Files.push_back(files[i].first);
    }
    result.Written = true;
    return result;
}

}  // namespace mw
