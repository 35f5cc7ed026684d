#include "convert/orf_reader.h"

#include <algorithm>
#include <set>

#include "model/byte_cursor.h"
#include "model/geometry.h"
#include "model/text_codec.h"

namespace mw {
namespace {

constexpr std::int32_t kMinRoomVersion = 4;
constexpr std::size_t kFaceFields = 19;
constexpr std::size_t kCornerSize = 30;

struct RoomFace {
    Vector3 Normal;
    std::int16_t Texture = -1;
    std::vector<FaceVertex> Corners;
};

struct Room {
    std::vector<Vector3> Positions;
    std::vector<RoomFace> Faces;
    std::vector<std::string> Textures;
};

ResultCode ReadRoom(ByteReader& r, Room& room) {
    std::int32_t vertexCount = 0, faceCount = 0;
    bool headerSeen = false;
    while (r.remaining() > 0) {
        const std::int32_t type = r.i32();
        const std::int32_t length = r.i32();
        if (!r.ok()) return ResultCode::ORFReadError;
        const std::size_t statedEnd = r.pos() + static_cast<std::size_t>(std::max(length, 0));
        switch (type) {
            case 0:
            case 5: {
                if (r.i32() < kMinRoomVersion && r.ok()) return ResultCode::ORFVersionTooLow;
                vertexCount = r.i32();
                faceCount = r.i32();
                if (!r.ok()) return ResultCode::ORFReadError;
                if (vertexCount == 0 || faceCount == 0) return ResultCode::NoORFData;
                headerSeen = true;
                break;
            }
            case 1:
                if (vertexCount == 0 || !r.canHold(vertexCount, 12))
                    return ResultCode::ORFReadError;
                room.Positions.resize(static_cast<std::size_t>(vertexCount));
                for (Vector3& p : room.Positions)
                    p = r.vec3();
                break;
            case 2:
                if (faceCount == 0 || !r.canHold(faceCount, kFaceFields)) {
                    return ResultCode::ORFReadError;
                }
                room.Faces.resize(static_cast<std::size_t>(faceCount));
                for (RoomFace& f : room.Faces) {
                    r.u8();  // flags
                    const std::int32_t corners = r.i32();
                    f.Normal = r.vec3();
                    f.Texture = static_cast<std::int16_t>(r.u16());
                    if (corners < 0 || corners > kMaxRoomCorners ||
                        !r.canHold(corners, kCornerSize)) {
                        return ResultCode::ORFReadError;
                    }
                    f.Corners.resize(static_cast<std::size_t>(corners));
                    for (FaceVertex& c : f.Corners) {
                        c.VertexIndex = static_cast<std::int16_t>(r.u16());
                        c.U = r.f32();
                        c.V = r.f32();
                        r.skip(20);
                    }
                }
                break;
            case 4: {
                const std::int32_t count = r.i32();
                if (!r.canHold(count, 1)) return ResultCode::ORFReadError;
                room.Textures.assign(static_cast<std::size_t>(count), {});
                for (std::string& name : room.Textures) {
                    // A name runs to its 0 byte or to the end of the file.
                    while (r.remaining() > 0) {
                        const char c = static_cast<char>(r.u8());
                        if (c == '\0') break;
                        name.push_back(c);
                    }
                }
                break;
            }
            case 3:
                return headerSeen ? ResultCode::Success : ResultCode::NoORFData;
            default:
                if (statedEnd >= r.size())
                    return headerSeen ? ResultCode::Success : ResultCode::NoORFData;
                r.seek(statedEnd);
        }
        if (!r.ok()) return ResultCode::ORFReadError;
        if (statedEnd >= r.size()) break;
    }
    return headerSeen ? ResultCode::Success : ResultCode::NoORFData;
}

// Groups the faces into pieces connected through shared vertices, in the order a scan of
// the faces finds them: a piece starts at the first unused face and takes, pass after pass
// over the faces, every face that touches one of its vertices.
std::vector<std::vector<int>> Pieces(const Room& room) {
    const std::size_t faceCount = room.Faces.size();
    std::vector<std::vector<int>> facesOfVertex(room.Positions.size());
    for (std::size_t f = 0; f < faceCount; ++f) {
        for (const FaceVertex& c : room.Faces[f].Corners) {
            auto& list = facesOfVertex[static_cast<std::size_t>(c.VertexIndex)];
            if (list.empty() || list.back() != static_cast<int>(f))
                list.push_back(static_cast<int>(f));
        }
    }
    std::vector<bool> used(faceCount, false), marked(room.Positions.size(), false);
    std::vector<std::vector<int>> pieces;
    std::size_t firstUnused = 0;
    while (true) {
        while (firstUnused < faceCount && used[firstUnused])
            ++firstUnused;
        if (firstUnused == faceCount) break;
        std::vector<int> piece;
        std::set<int> eligible;  // unused faces touching a marked vertex
        auto take = [&](int f) {
            used[static_cast<std::size_t>(f)] = true;
            eligible.erase(f);
            piece.push_back(f);
            for (const FaceVertex& c : room.Faces[static_cast<std::size_t>(f)].Corners) {
                const auto v = static_cast<std::size_t>(c.VertexIndex);
                if (marked[v]) continue;
                marked[v] = true;
                for (int g : facesOfVertex[v]) {
                    if (!used[static_cast<std::size_t>(g)]) eligible.insert(g);
                }
            }
        };
        take(static_cast<int>(firstUnused));
        // The scan goes on from the face after the last one taken and starts a new pass
        // from the beginning when it runs off the end.
        int next = static_cast<int>(firstUnused) + 1;
        while (!eligible.empty()) {
            auto it = eligible.lower_bound(next);
            if (it == eligible.end()) it = eligible.begin();
            const int f = *it;
            take(f);
            next = f + 1;
        }
        pieces.push_back(std::move(piece));
    }
    return pieces;
}

void Convert(const Room& room, const std::vector<std::vector<int>>& pieces,
             const GameNameTable& names, ModelData& m) {
    // Face normals, then vertex normals as the mean of the faces that use each vertex.
    std::vector<Vector3> faceNormals;
    std::vector<Vector3> vertexNormals(room.Positions.size());
    std::vector<float> uses(room.Positions.size(), 0.0f);
    for (const RoomFace& f : room.Faces) {
        const Vector3 n = DivideBy(f.Normal, Length(f.Normal) + 0.000001f);
        faceNormals.push_back(n);
        for (const FaceVertex& c : f.Corners) {
            const auto v = static_cast<std::size_t>(c.VertexIndex);
            vertexNormals[v] = Add(vertexNormals[v], n);
            uses[v] += 1.0f;
        }
    }
    for (std::size_t v = 0; v < vertexNormals.size(); ++v) {
        const Vector3 mean = DivideBy(vertexNormals[v], uses[v]);
        vertexNormals[v] = DivideBy(mean, Length(mean) + 0.000001f);
    }

    m.Header.Radius = -99999.0f;
    m.Header.Min = {99999.0f, 99999.0f, 99999.0f};
    m.Header.Max = {-99999.0f, -99999.0f, -99999.0f};
    std::vector<int> pieceVertex(room.Positions.size(), -1);
    for (std::size_t k = 0; k < pieces.size(); ++k) {
        SubObject sub;
        sub.Index = static_cast<int>(k);
        sub.Parent = -1;
        sub.Name = "Unnamed" + std::to_string(k + 1);
        // The piece's vertices in ascending room order.
        std::vector<int> vertices;
        for (int f : pieces[k]) {
            for (const FaceVertex& c : room.Faces[static_cast<std::size_t>(f)].Corners) {
                vertices.push_back(c.VertexIndex);
            }
        }
        std::sort(vertices.begin(), vertices.end());
        vertices.erase(std::unique(vertices.begin(), vertices.end()), vertices.end());
        for (int v : vertices) {
            pieceVertex[static_cast<std::size_t>(v)] = sub.VertexCount();
            sub.Vertices.push_back({room.Positions[static_cast<std::size_t>(v)],
                                    vertexNormals[static_cast<std::size_t>(v)], 1.0f});
        }
        for (int fi : pieces[k]) {
            const RoomFace& rf = room.Faces[static_cast<std::size_t>(fi)];
            Face face;
            face.Normal = faceNormals[static_cast<std::size_t>(fi)];
            face.VertexCount = static_cast<std::int32_t>(rf.Corners.size());
            face.Primitive = PrimitiveFor(face.VertexCount);
            face.TextureIndex = rf.Texture;
            face.Textured = rf.Texture == -1 ? 0 : 1;
            for (const FaceVertex& c : rf.Corners) {
                sub.Corners.push_back(
                    {pieceVertex[static_cast<std::size_t>(c.VertexIndex)], c.U, c.V});
            }
            sub.Faces.push_back(face);
        }

        // The pivot goes to the centre of the piece's box.
        for (const Vertex& v : sub.Vertices) {
            sub.BoxMin = ComponentMin(sub.BoxMin, v.Position);
            sub.BoxMax = ComponentMax(sub.BoxMax, v.Position);
        }
        sub.Offset = Midpoint(sub.BoxMin, sub.BoxMax);
        m.Header.Min = ComponentMin(m.Header.Min, sub.BoxMin);
        m.Header.Max = ComponentMax(m.Header.Max, sub.BoxMax);
        sub.BoxMin = {99999.0f, 99999.0f, 99999.0f};
        sub.BoxMax = {-99999.0f, -99999.0f, -99999.0f};
        for (Vertex& v : sub.Vertices) {
            if (Length(v.Position) > m.Header.Radius) m.Header.Radius = Length(v.Position);
            v.Position = Subtract(v.Position, sub.Offset);
            sub.BoxMin = ComponentMin(sub.BoxMin, v.Position);
            sub.BoxMax = ComponentMax(sub.BoxMax, v.Position);
            if (Length(v.Position) > sub.Radius) sub.Radius = Length(v.Position);
        }
        sub.Center = Midpoint(sub.BoxMin, sub.BoxMax);
        m.SubObjects.push_back(std::move(sub));
        m.MergeTable.push_back({static_cast<int>(k)});
    }

    // Texture names through the game-name table; the first matching row wins.
    m.Textures.assign(room.Textures.size(), {});
    std::vector<bool> resolved(room.Textures.size(), false);
    std::size_t open = room.Textures.size();
    for (std::size_t t = 0; t < room.Textures.size(); ++t)
        m.Textures[t].GameName = room.Textures[t];
    for (const auto& [game, bitmap] : names.rows()) {
        if (open == 0) break;
        for (std::size_t t = 0; t < room.Textures.size(); ++t) {
            if (resolved[t] || m.Textures[t].GameName != game) continue;
            m.Textures[t].Name = LowerCase1252(bitmap);
            m.Textures[t].LoadedName = m.Textures[t].Name;
            resolved[t] = true;
            --open;
        }
    }
    // A name no table knows is kept as the bitmap name (lower case, up to its first "."), so
    // that a later lookup in the game data can still find it.
    for (std::size_t t = 0; t < room.Textures.size(); ++t) {
        if (resolved[t]) continue;
        const std::string& game = room.Textures[t];
        m.Textures[t].Name = LowerCase1252(std::string_view(game).substr(0, game.find('.')));
        m.Textures[t].LoadedName = m.Textures[t].Name;
    }
}

}  // namespace

ResultCode importORF(ModelData& model, std::span<const std::uint8_t> bytes,
                     const GameNameTable& names) {
    ClearModel(model);
    Room room;
    ByteReader r(bytes);
    ResultCode result = ReadRoom(r, room);
    if (result == ResultCode::Success && (room.Faces.empty() || room.Positions.empty())) {
        result = room.Faces.empty() && room.Positions.empty() ? ResultCode::NoORFData
                                                              : ResultCode::ORFReadError;
    }
    // Faces without a single corner among them hold no geometry: nothing to import (a room
    // written from such a model could not be read back).
    std::size_t corners = 0;
    for (const RoomFace& f : room.Faces)
        corners += f.Corners.size();
    if (result == ResultCode::Success && corners == 0) result = ResultCode::NoORFData;
    // Every corner must name a vertex of the room.
    for (const RoomFace& f : room.Faces) {
        for (const FaceVertex& c : f.Corners) {
            if (c.VertexIndex < 0 || c.VertexIndex >= static_cast<int>(room.Positions.size())) {
                result = ResultCode::ORFReadError;
            }
        }
    }
    if (result != ResultCode::Success) return result;
    const auto pieces = Pieces(room);
    if (pieces.size() > static_cast<std::size_t>(kMaxRoomPieces)) return ResultCode::ORFReadError;
    Convert(room, pieces, names, model);
    model.Version = 0;
    return ResultCode::Success;
}

}  // namespace mw
