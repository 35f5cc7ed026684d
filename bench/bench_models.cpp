#include "bench_models.h"

#include <cstring>

#include "model/geometry.h"

namespace mw {

void CopyBytesBenchmark(benchmark::State& state, const std::vector<std::uint8_t>& bytes) {
    std::vector<std::uint8_t> copy(bytes.size());
    for (auto _ : state) {
        std::memcpy(copy.data(), bytes.data(), bytes.size());
        benchmark::DoNotOptimize(copy.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
}

ModelData LargeModel(int subObjects, int facesPerPart) {
    ModelData m;
    m.Version = 2300;
    for (int t = 0; t < 8; ++t)
        m.Textures.push_back({"", "texture" + std::to_string(t), ""});
    const int side = 1;
    (void)side;
    for (int s = 0; s < subObjects; ++s) {
        SubObject sub;
        sub.Index = s;
        sub.Parent = s == 0 ? -1 : (s < 10 ? 0 : s % 10);
        sub.Name = "part" + std::to_string(s);
        sub.Properties = s % 7 == 0 ? "$rotate=3" : "";
        sub.Offset = {static_cast<float>(s % 10), static_cast<float>(s / 10), 0};
        // A strip of triangles: face f uses vertices f, f+1, f+2.
        for (int v = 0; v < facesPerPart + 2; ++v) {
            sub.Vertices.push_back(
                {{static_cast<float>(v / 2), static_cast<float>(v % 2), 0.1f * s},
                 {0, 0, 1},
                 v % 5 == 0 ? 0.5f : 1.0f});
        }
        for (int f = 0; f < facesPerPart; ++f) {
            Face face;
            face.Normal = {0, 0, 1};
            face.VertexCount = 3;
            face.Primitive = kPrimTriangles;
            face.Textured = f % 4 != 0;
            face.TextureIndex = face.Textured ? f % 8 : -1;
            face.Color = {static_cast<std::uint8_t>(f), 128, 64, 255};
            sub.Faces.push_back(face);
            for (int c = 0; c < 3; ++c)
                sub.Corners.push_back({f + c, 0.25f * c, 0.5f});
        }
        for (int k = 0; k < 10; ++k) {
            sub.Pos.Keys.push_back({k * 10, {static_cast<float>(k), 0, 0}});
            sub.Rot.Keys.push_back({k * 10, {0, 1, 0}, 1000 * k, IdentityMatrix()});
        }
        sub.Pos.FirstFrame = sub.Rot.FirstFrame = 0;
        sub.Pos.LastFrame = sub.Rot.LastFrame = 90;
        m.SubObjects.push_back(std::move(sub));
    }
    for (int g = 0; g < 64; ++g)
        m.GunPoints.push_back({g % subObjects, {1, 2, 3}, {0, 0, 1}});
    m.Batteries.push_back({{0, 1, 2}, {1}});
    m.HasPANI = m.HasRANI = true;
    RebuildSaveOrder(m);
    for (int s = 0; s < subObjects; ++s)
        CalcRotMatrix(m, s);
    CreatePushPop(m);
    MoveSOBJ(m);
    return m;
}

}  // namespace mw
