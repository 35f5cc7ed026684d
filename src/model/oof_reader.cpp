#include "model/oof_reader.h"

#include <string_view>

#include "model/byte_cursor.h"
#include "model/geometry.h"
#include "model/properties.h"
#include "model/text_codec.h"
#include "model/texture_rename.h"

namespace mw {

const char* TranslateError(int code) {
    switch (code) {
        case 0:
            return "Success";
        case 1:
            return "Not a valid OOF file";
        case 2:
            return "OOF Version too low";
        case 3:
            return "No OOF model data to import";
        case 4:
            return "Error reading OOF file";
        case 5:
            return "No ORF model data to import";
        case 6:
            return "Roomfile version to low";
        case 7:
            return "Error reading ORF file";
        default:
            return "";
    }
}

namespace {

constexpr std::int32_t kMinVersion = 2200;
constexpr std::int32_t kAlphaVersion = 2300;
constexpr std::size_t kPointRecordSize = 28;
// The smallest SOBJ chunk (header and fixed fields, empty texts, no geometry).
constexpr std::size_t kMinSubObjectChunk = 108;
constexpr std::size_t kMinFaceRecord = 31;

bool IsId(std::string_view id, const char* name) {
    return id == std::string_view(name, 4);
}

// A counted text without its terminator: the last byte whatever it is when `dropAnyLast`,
// otherwise only a final NUL.
std::string CountedText(ByteReader& r, bool dropAnyLast) {
    const std::int32_t len = r.i32();
    if (len <= 0) return {};
    std::string text = r.text(static_cast<std::size_t>(len));
    if (!text.empty() && (dropAnyLast || text.back() == '\0')) text.pop_back();
    return text;
}

class OofReader {
  public:
    OofReader(ModelData& model, std::span<const std::uint8_t> bytes) : m_(model), r_(bytes) {}

    ResultCode run();

  private:
    ResultCode chunk(std::string_view id, std::size_t statedEnd);
    ResultCode header();
    ResultCode subObject();
    bool faces(SubObject& sub);
    void textures();
    bool points(std::vector<ModelPoint>& list, int limit);
    void special();
    bool batteries();
    bool positionKeys();
    bool rotationKeys();
    void frameRange(std::int32_t first, std::int32_t last);
    ResultCode finish();

    ModelData& m_;
    ByteReader r_;
    bool headerRead_ = false;
    bool bodyRead_ = false;  // SOBJ or key chunks, which all need the header first
    std::vector<bool> subRead_;
};

ResultCode OofReader::run() {
    if (r_.text(4) != "PSPO") return ResultCode::NotOOF;
    const std::int32_t version = r_.i32();
    if (r_.ok() && version < kMinVersion) return ResultCode::OOFVersionTooLow;

    ClearModel(m_);
    m_.Version = version;
    m_.FrameMin = 99999;
    m_.FrameMax = -99999;

    ResultCode result = r_.ok() ? ResultCode::Success : ResultCode::OOFReadError;
    while (result == ResultCode::Success) {
        const std::string id = r_.text(4);
        const std::int32_t length = r_.i32();
        if (!r_.ok() || length < 0) {
            result = ResultCode::OOFReadError;
            break;
        }
        const std::size_t statedEnd = r_.pos() + static_cast<std::size_t>(length);
        result = chunk(id, statedEnd);
        if (result == ResultCode::Success && !r_.ok()) result = ResultCode::OOFReadError;
        if (statedEnd + 1 >= r_.size()) break;
    }
    if (result == ResultCode::Success) result = finish();
    if (result != ResultCode::Success) {
        ClearModel(m_);
        m_.Version = version;
        m_.FrameMin = 99999;
        m_.FrameMax = -99999;
    }

    if (m_.FrameMin == 99999) m_.FrameMin = 0;
    if (m_.FrameMax == -99999) m_.FrameMax = 1;
    if (m_.FrameMin >= m_.FrameMax) {
        m_.FrameMin = 0;
        m_.FrameMax = 1;
    }
    return result;
}

ResultCode OofReader::chunk(std::string_view id, std::size_t statedEnd) {
    if (IsId(id, "OHDR")) return header();
    if (IsId(id, "SOBJ")) return subObject();
    bool ok = true;
    if (IsId(id, "TXTR")) {
        textures();
    } else if (IsId(id, "GPNT")) {
        ok = points(m_.GunPoints, kMaxGunPoints);
    } else if (IsId(id, "ATCH")) {
        ok = points(m_.AttachPoints, kMaxAttachPoints);
    } else if (IsId(id, "NATH")) {
        ok = points(m_.AttachNormals, kMaxAttachNormals);
    } else if (IsId(id, "GRND")) {
        ok = points(m_.GroundPoints, kMaxGroundPoints);
    } else if (IsId(id, "SPCL")) {
        special();
    } else if (IsId(id, "WBAT")) {
        ok = batteries();
    } else if (IsId(id, "PANI")) {
        ok = positionKeys();
    } else if (IsId(id, "RANI") || IsId(id, "ANIM")) {
        ok = rotationKeys();
    } else if (IsId(id, "PINF")) {
        m_.PinfText = r_.text(statedEnd - r_.pos());
    } else if (IsId(id, "IDTA") || IsId(id, "GRID")) {
        // A block that runs past the data ends the read like any other last chunk.
        if (statedEnd < r_.size()) r_.seek(statedEnd);
    } else {
        return ResultCode::OOFReadError;
    }
    return ok && r_.ok() ? ResultCode::Success : ResultCode::OOFReadError;
}

ResultCode OofReader::header() {
    if (headerRead_ || bodyRead_) return ResultCode::OOFReadError;
    headerRead_ = true;
    const std::int32_t count = r_.i32();
    m_.Header.Radius = r_.f32();
    m_.Header.Min = r_.vec3();
    m_.Header.Max = r_.vec3();
    const std::int32_t listCount = r_.i32();
    if (!r_.ok()) return ResultCode::OOFReadError;
    if (count == 0) return ResultCode::NoOOFData;
    if (listCount > 0) {
        if (!r_.canHold(listCount, 4)) return ResultCode::OOFReadError;
        m_.HeaderList.resize(static_cast<std::size_t>(listCount));
        for (auto& v : m_.HeaderList)
            v = r_.i32();
    }
    // Every sub-object still needs a chunk of its own.
    if (!r_.canHold(count, kMinSubObjectChunk)) return ResultCode::OOFReadError;
    m_.SubObjects.resize(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        m_.Sub(i).Index = i;
    subRead_.assign(static_cast<std::size_t>(count), false);
    return ResultCode::Success;
}

ResultCode OofReader::subObject() {
    bodyRead_ = true;
    const std::int32_t index = r_.i32();
    if (!r_.ok() || !m_.IsRecord(index)) return ResultCode::OOFReadError;
    subRead_[static_cast<std::size_t>(index)] = true;
    SubObject& sub = m_.Sub(index);
    {
        SubObject fresh;  // a repeated chunk replaces the record but not its keys
        fresh.Pos = std::move(sub.Pos);
        fresh.Rot = std::move(sub.Rot);
        sub = std::move(fresh);
    }
    sub.Index = index;
    sub.Parent = r_.i32();
    sub.KeptVectorA = r_.vec3();
    sub.KeptFloat = r_.f32();
    sub.KeptVectorB = r_.vec3();
    sub.Offset = r_.vec3();
    sub.Radius = r_.f32();
    sub.KeptIntA = r_.i32();
    sub.KeptIntB = r_.i32();
    sub.Center = r_.vec3();
    sub.Name = CountedText(r_, false);
    sub.Properties = CountedText(r_, false);
    ParseProperties(sub);
    sub.KeptIntC = r_.i32();
    sub.KeptIntD = r_.i32();
    const std::int32_t skip = r_.i32();
    if (!r_.canHold(skip, 4)) return ResultCode::OOFReadError;
    r_.skip(4 * static_cast<std::size_t>(skip));

    const bool hasAlpha = m_.Version >= kAlphaVersion;
    const std::int32_t vertexCount = r_.i32();
    if (!r_.canHold(vertexCount, hasAlpha ? 28 : 24)) return ResultCode::OOFReadError;
    sub.Vertices.resize(static_cast<std::size_t>(vertexCount));
    for (Vertex& v : sub.Vertices) {
        v.Position = r_.vec3();
        sub.BoxMin = ComponentMin(sub.BoxMin, v.Position);
        sub.BoxMax = ComponentMax(sub.BoxMax, v.Position);
    }
    for (Vertex& v : sub.Vertices)
        v.Normal = RepairIndeterminate(r_.vec3());
    sub.HasAlpha = false;
    for (Vertex& v : sub.Vertices) {
        v.Alpha = hasAlpha ? r_.f32() : 1.0f;
        if (v.Alpha < 0.99f) sub.HasAlpha = true;
    }
    return faces(sub) ? ResultCode::Success : ResultCode::OOFReadError;
}

bool OofReader::faces(SubObject& sub) {
    const std::int32_t faceCount = r_.i32();
    if (!r_.canHold(faceCount, kMinFaceRecord)) return false;
    sub.Faces.resize(static_cast<std::size_t>(faceCount));
    sub.Corners.reserve(3 * static_cast<std::size_t>(faceCount));
    // A sub-object holds at most 100 corners per face on average.
    const std::size_t cornerLimit = 100 * static_cast<std::size_t>(faceCount) + 1;
    for (Face& face : sub.Faces) {
        // Normal, corner count and the textured flag in one read.
        struct {
            Vector3 normal;
            std::int32_t corners;
            std::int32_t textured;
        } head;
        static_assert(sizeof(head) == 20);
        if (!r_.words(&head, 5)) return false;
        face.Normal = RepairIndeterminate(head.normal);
        face.VertexCount = head.corners;
        face.Primitive = PrimitiveFor(face.VertexCount);
        face.Textured = head.textured;
        if (face.Textured != 0) {
            face.TextureIndex = r_.i32();
            face.Color = {255, 255, 255, 255};
        } else {
            face.TextureIndex = -1;
            face.Color[0] = r_.u8();
            face.Color[1] = r_.u8();
            face.Color[2] = r_.u8();
            face.Color[3] = 255;
        }
        if (!r_.canHold(face.VertexCount, 12) ||
            sub.Corners.size() + static_cast<std::size_t>(face.VertexCount) > cornerLimit) {
            return false;
        }
        // Corners are three 32-bit words each, as FaceVertex holds them.
        static_assert(sizeof(FaceVertex) == 12);
        const std::size_t first = sub.Corners.size();
        sub.Corners.resize(first + static_cast<std::size_t>(face.VertexCount));
        r_.words(sub.Corners.data() + first, 3 * static_cast<std::size_t>(face.VertexCount));
        for (std::size_t c = first; c < sub.Corners.size(); ++c) {
            const std::int32_t v = sub.Corners[c].VertexIndex;
            if (v < 0 || v >= sub.VertexCount()) return false;
        }
        std::uint32_t kept[2];
        r_.words(kept, 2);
        face.FaceKeptA = kept[0];
        face.FaceKeptB = kept[1];
    }
    return r_.ok();
}

void OofReader::textures() {
    const std::int32_t count = r_.i32();
    if (count < 1 || !r_.canHold(count, 4)) return;
    m_.Textures.assign(static_cast<std::size_t>(count), Texture{});
    for (Texture& t : m_.Textures) {
        t.Name = RenamedTexture(LowerCase1252(CountedText(r_, true)));
        t.LoadedName = t.Name;
    }
}

bool OofReader::points(std::vector<ModelPoint>& list, int limit) {
    std::int32_t count = r_.i32();
    if (count > limit) count = limit;
    if (count < 0) count = 0;
    if (!r_.canHold(count, kPointRecordSize)) return false;
    list.resize(static_cast<std::size_t>(count));
    for (ModelPoint& p : list) {
        p.Parent = r_.i32();
        p.Position = r_.vec3();
        p.Normal = r_.vec3();
    }
    return r_.ok();
}

void OofReader::special() {
    const std::int32_t count = r_.i32();
    if (count < 1) return;
    SpecialPoint sp;
    sp.Name = CountedText(r_, false);
    sp.Properties = CountedText(r_, false);
    sp.Position = r_.vec3();
    sp.Radius = r_.f32();
    if (r_.ok()) m_.Special = std::move(sp);
}

bool OofReader::batteries() {
    std::int32_t count = r_.i32();
    if (count > kMaxBatteries) count = kMaxBatteries;
    if (count < 0) count = 0;
    if (!r_.canHold(count, 8)) return false;
    m_.Batteries.resize(static_cast<std::size_t>(count));
    auto list = [&](std::vector<std::int32_t>& out) {
        const std::int32_t n = r_.i32();
        if (n < 0) return;
        if (!r_.canHold(n, 4)) return;
        out.clear();
        for (std::int32_t i = 0; i < n; ++i) {
            const std::int32_t v = r_.i32();
            if (i < kMaxBatteryEntries) out.push_back(v);
        }
    };
    for (WeaponBattery& b : m_.Batteries) {
        list(b.GunPoints);
        list(b.Turrets);
    }
    return r_.ok();
}

void OofReader::frameRange(std::int32_t first, std::int32_t last) {
    if (first < m_.FrameMin) m_.FrameMin = first;
    if (last > m_.FrameMax) m_.FrameMax = last;
}

bool OofReader::positionKeys() {
    bodyRead_ = true;
    m_.HasPANI = true;
    for (SubObject& sub : m_.SubObjects) {
        const std::int32_t count = r_.i32();
        sub.Pos.FirstFrame = r_.i32();
        sub.Pos.LastFrame = r_.i32();
        if (count > kMaxKeys || !r_.canHold(count, 16)) return false;
        frameRange(sub.Pos.FirstFrame, sub.Pos.LastFrame);
        sub.Pos.Keys.resize(static_cast<std::size_t>(count));
        for (PosKey& k : sub.Pos.Keys) {
            k.Frame = r_.i32();
            k.Position = r_.vec3();
        }
    }
    return r_.ok();
}

bool OofReader::rotationKeys() {
    bodyRead_ = true;
    m_.HasRANI = true;
    for (std::size_t s = 0; s < m_.SubObjects.size(); ++s) {
        SubObject& sub = m_.SubObjects[s];
        const std::int32_t count = r_.i32();
        sub.Rot.FirstFrame = r_.i32();
        sub.Rot.LastFrame = r_.i32();
        if (count > kMaxKeys || !r_.canHold(count, 20)) return false;
        frameRange(sub.Rot.FirstFrame, sub.Rot.LastFrame);
        sub.Rot.Keys.resize(static_cast<std::size_t>(count));
        for (RotKey& k : sub.Rot.Keys) {
            k.Frame = r_.i32();
            k.Axis = r_.vec3();
            k.Angle = r_.i32();
        }
        // This record's keys (the file's own index field may name another record).
        CalcRotMatrix(m_, static_cast<int>(s));
    }
    return r_.ok();
}

ResultCode OofReader::finish() {
    if (m_.SubObjects.empty()) return ResultCode::NoOOFData;
    for (bool seen : subRead_) {
        if (!seen) return ResultCode::OOFReadError;
    }
    RebuildSaveOrder(m_);
    // A parent that does not exist or a loop in the hierarchy leaves sub-objects that no
    // walk from a root reaches; such a model cannot be drawn or saved.
    if (m_.SubObjectCount() != static_cast<int>(m_.SubObjects.size())) {
        return ResultCode::OOFReadError;
    }
    return ResultCode::Success;
}

}  // namespace

ResultCode readOOF(ModelData& model, std::span<const std::uint8_t> bytes) {
    return OofReader(model, bytes).run();
}

}  // namespace mw
