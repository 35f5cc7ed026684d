#include "model/oof_writer.h"

#include "model/byte_cursor.h"
#include "model/file_io.h"
#include "model/geometry.h"

namespace mw {
namespace {

constexpr std::int32_t kWriteVersion = 2300;

class OofWriter {
  public:
    explicit OofWriter(ModelData& model) : m_(model), slotOf_(SlotTable(model)) {}

    std::vector<std::uint8_t> run();

  private:
    // Writes the chunk header, the content `fn` writes, then patches the length.
    template <typename Fn>
    void chunk(const char* id, Fn&& fn) {
        w_.raw(std::string_view(id, 4));
        const std::size_t lengthAt = w_.size();
        w_.i32(0);
        fn();
        w_.patchI32(lengthAt, static_cast<std::int32_t>(w_.size() - lengthAt - 4));
    }
    void text(const std::string& s) {
        w_.i32(static_cast<std::int32_t>(s.size() + 1));
        w_.raw(s);
        w_.u8(0);
    }
    int slotOf(int s) const { return m_.IsRecord(s) ? slotOf_[static_cast<std::size_t>(s)] : -1; }

    void subObject(int slot);
    void points(const char* id, const std::vector<ModelPoint>& list);

    ModelData& m_;
    std::vector<int> slotOf_;
    ByteWriter w_;
};

std::vector<std::uint8_t> OofWriter::run() {
    m_.Version = kWriteVersion;
    std::size_t estimate = 4096;
    for (const SubObject& sub : m_.SubObjects) {
        estimate += 28 * sub.Vertices.size() + 12 * sub.Corners.size() + 40 * sub.Faces.size() +
                    36 * sub.Pos.Keys.size() + 128;
    }
    w_.reserve(estimate);
    w_.raw("PSPO");
    w_.i32(kWriteVersion);

    if (!m_.Textures.empty()) {
        chunk("TXTR", [&] {
            w_.i32(static_cast<std::int32_t>(m_.Textures.size()));
            for (const Texture& t : m_.Textures)
                text(t.Name);
        });
    }
    m_.HeaderList.clear();
    chunk("OHDR", [&] {
        w_.i32(m_.SubObjectCount());
        w_.f32(m_.Header.Radius);
        w_.vec3(m_.Header.Min);
        w_.vec3(m_.Header.Max);
        w_.i32(0);
    });
    for (int slot = 0; slot < m_.SubObjectCount(); ++slot) {
        chunk("SOBJ", [&] { subObject(slot); });
    }
    if (m_.Special) {
        chunk("SPCL", [&] {
            w_.i32(1);
            text(m_.Special->Name);
            text(m_.Special->Properties);
            w_.vec3(m_.Special->Position);
            w_.f32(m_.Special->Radius);
        });
    }
    points("ATCH", m_.AttachPoints);
    points("NATH", m_.AttachNormals);
    points("GRND", m_.GroundPoints);
    points("GPNT", m_.GunPoints);
    if (!m_.Batteries.empty()) {
        chunk("WBAT", [&] {
            w_.i32(static_cast<std::int32_t>(m_.Batteries.size()));
            for (const WeaponBattery& b : m_.Batteries) {
                w_.i32(static_cast<std::int32_t>(b.GunPoints.size()));
                for (std::int32_t g : b.GunPoints)
                    w_.i32(g);
                w_.i32(static_cast<std::int32_t>(b.Turrets.size()));
                for (std::int32_t t : b.Turrets)
                    w_.i32(slotOf(t));
            }
        });
    }
    if (m_.HasPANI) {
        chunk("PANI", [&] {
            for (int slot = 0; slot < m_.SubObjectCount(); ++slot) {
                const auto& track = m_.Sub(m_.Head(slot)).Pos;
                w_.i32(track.KeyCount());
                w_.i32(track.FirstFrame);
                w_.i32(track.LastFrame);
                for (const PosKey& k : track.Keys) {
                    w_.i32(k.Frame);
                    w_.vec3(k.Position);
                }
            }
        });
    }
    if (m_.HasRANI) {
        chunk("RANI", [&] {
            for (int slot = 0; slot < m_.SubObjectCount(); ++slot) {
                const auto& track = m_.Sub(m_.Head(slot)).Rot;
                w_.i32(track.KeyCount());
                w_.i32(track.FirstFrame);
                w_.i32(track.LastFrame);
                for (const RotKey& k : track.Keys) {
                    w_.i32(k.Frame);
                    // A negative angle is stored as a positive one about the opposite axis.
                    if (k.Angle > 0) {
                        w_.vec3(k.Axis);
                        w_.i32(k.Angle);
                    } else {
                        w_.vec3({-k.Axis.X, -k.Axis.Y, -k.Axis.Z});
                        w_.i32(k.Angle == INT32_MIN ? INT32_MAX : -k.Angle);
                    }
                }
            }
        });
    }
    m_.PinfText = WriterInfo();
    chunk("PINF", [&] { w_.raw(m_.PinfText); });
    return w_.release();
}

void OofWriter::subObject(int slot) {
    const auto& column = m_.MergeTable[static_cast<std::size_t>(slot)];
    const SubObject& main = m_.Sub(column[0]);
    w_.i32(slot);
    w_.i32(main.Parent == -1 ? -1 : slotOf(main.Parent));
    w_.vec3(main.KeptVectorA);
    w_.f32(main.KeptFloat);
    w_.vec3(main.KeptVectorB);
    w_.vec3(main.Offset);
    w_.f32(main.Radius);
    w_.i32(main.KeptIntA);
    w_.i32(main.KeptIntB);
    w_.vec3(main.Center);
    text(main.Name);
    text(main.Properties);
    w_.i32(main.KeptIntC);
    w_.i32(main.KeptIntD);
    w_.i32(0);  // no skipped block

    std::int32_t vertexTotal = 0;
    std::int32_t faceTotal = 0;
    for (int member : column) {
        vertexTotal += m_.Sub(member).VertexCount();
        faceTotal += m_.Sub(member).FaceCount();
    }
    w_.i32(vertexTotal);
    for (int member : column) {
        for (const Vertex& v : m_.Sub(member).Vertices)
            w_.vec3(v.Position);
    }
    for (int member : column) {
        for (const Vertex& v : m_.Sub(member).Vertices)
            w_.vec3(v.Normal);
    }
    for (int member : column) {
        for (const Vertex& v : m_.Sub(member).Vertices)
            w_.f32(v.Alpha);
    }

    w_.i32(faceTotal);
    std::int32_t base = 0;  // vertices of the members before this one
    for (int member : column) {
        const SubObject& sub = m_.Sub(member);
        std::size_t corner = 0;
        for (const Face& face : sub.Faces) {
            w_.vec3(face.Normal);
            w_.i32(face.VertexCount);
            w_.i32(face.Textured);
            if (face.Textured != 0) {
                w_.i32(face.TextureIndex);
            } else {
                w_.u8(face.Color[0]);
                w_.u8(face.Color[1]);
                w_.u8(face.Color[2]);
            }
            for (int c = 0; c < face.VertexCount; ++c, ++corner) {
                const FaceVertex fv =
                    corner < sub.Corners.size() ? sub.Corners[corner] : FaceVertex{};
                w_.i32(fv.VertexIndex + base);
                w_.f32(fv.U);
                w_.f32(fv.V);
            }
            w_.u32(face.FaceKeptA);
            w_.u32(face.FaceKeptB);
        }
        base += sub.VertexCount();
    }
}

void OofWriter::points(const char* id, const std::vector<ModelPoint>& list) {
    if (list.empty()) return;
    chunk(id, [&] {
        w_.i32(static_cast<std::int32_t>(list.size()));
        for (const ModelPoint& p : list) {
            w_.i32(slotOf(p.Parent));
            w_.vec3(p.Position);
            w_.vec3(p.Normal);
        }
    });
}

}  // namespace

std::vector<std::uint8_t> WriteOOF(ModelData& model) {
    return OofWriter(model).run();
}

std::string SaveOOF(ModelData& model, const std::filesystem::path& path) {
    if (path.empty()) return {};
    const std::vector<std::uint8_t> bytes = WriteOOF(model);
    return WriteFileReplacing(path, bytes);
}

}  // namespace mw
