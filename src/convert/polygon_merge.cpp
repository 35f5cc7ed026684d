#include "convert/polygon_merge.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

#include "model/geometry.h"

namespace mw {
namespace {

struct D3 {
    double X = 0, Y = 0, Z = 0;
};
D3 Of(Vector3 v) {
    return {v.X, v.Y, v.Z};
}
D3 Minus(D3 a, D3 b) {
    return {a.X - b.X, a.Y - b.Y, a.Z - b.Z};
}
D3 Cross(D3 a, D3 b) {
    return {a.Y * b.Z - a.Z * b.Y, a.Z * b.X - a.X * b.Z, a.X * b.Y - a.Y * b.X};
}
double Dot(D3 a, D3 b) {
    return a.X * b.X + a.Y * b.Y + a.Z * b.Z;
}

// A face and where its corners are in the pool (a joined face's corners are added at the end).
struct Poly {
    Face F;
    std::size_t Start = 0, Size = 0;
    bool FromTriangle = false;
    bool Alive = true;
};

class Merger {
  public:
    Merger(SubObject& sub, int maxCorners) : sub_(sub), max_(maxCorners) {
        Vector3 lo = sub.Vertices.empty() ? Vector3{} : sub.Vertices[0].Position, hi = lo;
        for (const Vertex& v : sub.Vertices) {
            lo = ComponentMin(lo, v.Position);
            hi = ComponentMax(hi, v.Position);
        }
        const double size = std::max(1e-3, static_cast<double>(Length(Subtract(hi, lo))));
        planeTolerance_ = 1e-4 * size;
        turnTolerance_ = 1e-6 * size * size;
        pool_ = sub.Corners;
        std::size_t at = 0;
        polys_.reserve(sub.Faces.size());
        for (const Face& f : sub.Faces) {
            Poly p;
            p.F = f;
            p.Start = at;
            p.Size = static_cast<std::size_t>(f.VertexCount);
            p.FromTriangle = f.VertexCount == 3;
            at += p.Size;
            polys_.push_back(p);
        }
        // Each vertex's outgoing edges (to vertex, face) in one array, by vertex.
        const std::size_t vertices = sub.Vertices.size();
        outStart_.assign(vertices + 1, 0);
        for (const FaceVertex& c : sub.Corners)
            ++outStart_[static_cast<std::size_t>(c.VertexIndex) + 1];
        for (std::size_t v = 0; v < vertices; ++v)
            outStart_[v + 1] += outStart_[v];
        outTo_.resize(sub.Corners.size());
        outPoly_.resize(sub.Corners.size());
        std::vector<std::size_t> fill(outStart_.begin(), outStart_.end() - 1);
        for (std::size_t i = 0; i < polys_.size(); ++i) {
            const std::span<const FaceVertex> c = CornersOf(polys_[i]);
            for (std::size_t k = 0; k < c.size(); ++k) {
                const std::size_t slot = fill[static_cast<std::size_t>(c[k].VertexIndex)]++;
                outTo_[slot] = c[(k + 1) % c.size()].VertexIndex;
                outPoly_[slot] = i;
            }
        }
        owner_.resize(polys_.size());
        for (std::size_t i = 0; i < owner_.size(); ++i)
            owner_[i] = i;
    }

    int Run() {
        int absorbed = 0;
        for (std::size_t i = 0; i < polys_.size(); ++i) {
            if (!polys_[i].FromTriangle || !polys_[i].Alive) continue;
            for (bool grown = true; grown;) {
                grown = false;
                const std::size_t size = polys_[i].Size;
                for (std::size_t e = 0; e < size && !grown; ++e) {
                    const std::span<const FaceVertex> loop = CornersOf(polys_[i]);
                    const std::int32_t a = loop[e].VertexIndex;
                    const std::int32_t b = loop[(e + 1) % size].VertexIndex;
                    const std::size_t other = Across(b, a);
                    if (other == kNone) continue;
                    if (TryMerge(i, e, other)) {
                        ++absorbed;
                        grown = true;
                    }
                }
            }
        }
        if (absorbed > 0) Write();
        return absorbed;
    }

  private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    std::span<const FaceVertex> CornersOf(const Poly& p) const {
        return std::span<const FaceVertex>(pool_).subspan(p.Start, p.Size);
    }

    // The face that now holds the edge from vertex b to vertex a (the face it was first in, or
    // the one that face was joined into), or kNone.
    std::size_t Across(std::int32_t b, std::int32_t a) {
        const auto v = static_cast<std::size_t>(b);
        for (std::size_t i = outStart_[v]; i < outStart_[v + 1]; ++i) {
            if (outTo_[i] == a) return Owner(outPoly_[i]);
        }
        return kNone;
    }
    std::size_t Owner(std::size_t i) {
        while (owner_[i] != i) {
            owner_[i] = owner_[owner_[i]];
            i = owner_[i];
        }
        return i;
    }

    D3 At(const FaceVertex& c) const {
        return Of(sub_.Vertices[static_cast<std::size_t>(c.VertexIndex)].Position);
    }

    static bool SameLook(const Face& a, const Face& b) {
        return a.TextureIndex == b.TextureIndex && a.Textured == b.Textured && a.Color == b.Color &&
               a.FaceKeptA == b.FaceKeptA && a.FaceKeptB == b.FaceKeptB;
    }

    // Joins triangle q into polygon p across p's edge e (p: a->b, q: b->a).
    bool TryMerge(std::size_t p, std::size_t e, std::size_t q) {
        if (q == p || !polys_[q].Alive || !polys_[q].FromTriangle) return false;
        Poly& P = polys_[p];
        const Poly& Q = polys_[q];
        if (!SameLook(P.F, Q.F)) return false;
        const std::span<const FaceVertex> pc = CornersOf(P), qc = CornersOf(Q);
        const std::size_t n = pc.size(), m = qc.size();
        const FaceVertex& pa = pc[e];
        const FaceVertex& pb = pc[(e + 1) % n];
        // Q must hold the edge the other way (b then a), with the same texture places.
        std::size_t j = m;
        for (std::size_t k = 0; k < m; ++k) {
            if (qc[k].VertexIndex == pb.VertexIndex &&
                qc[(k + 1) % m].VertexIndex == pa.VertexIndex) {
                j = k;
            }
        }
        if (j == m) return false;
        const FaceVertex& qb = qc[j];
        const FaceVertex& qa = qc[(j + 1) % m];
        const auto same = [](const FaceVertex& x, const FaceVertex& y) {
            return std::fabs(x.U - y.U) <= 1e-5f && std::fabs(x.V - y.V) <= 1e-5f;
        };
        if (!same(pa, qa) || !same(pb, qb)) return false;
        // One plane, facing one way.
        const D3 np = Of(P.F.Normal), nq = Of(Q.F.Normal);
        if (!(Dot(np, nq) >= 1.0 - 1e-4)) return false;  // (not places that are no numbers)
        const D3 origin = At(pa);
        for (const FaceVertex& c : qc) {
            if (!(std::fabs(Dot(np, Minus(At(c), origin))) <= planeTolerance_)) return false;
        }
        // The joined loop: p up to a, q's corners after a and before b, then p from b on.
        joined_.assign(pc.begin(), pc.begin() + static_cast<std::ptrdiff_t>(e) + 1);
        for (std::size_t k = (j + 2) % m; k != j; k = (k + 1) % m)
            joined_.push_back(qc[k]);
        joined_.insert(joined_.end(), pc.begin() + static_cast<std::ptrdiff_t>(e) + 1, pc.end());
        if (static_cast<int>(joined_.size()) > max_ || !Convex(joined_)) return false;
        P.Start = pool_.size();
        P.Size = joined_.size();
        pool_.insert(pool_.end(), joined_.begin(), joined_.end());
        P.F.VertexCount = static_cast<std::int32_t>(P.Size);
        P.F.Primitive = PrimitiveFor(P.F.VertexCount);
        polys_[q].Alive = false;
        owner_[q] = p;
        return true;
    }

    // Every turn of the loop goes the same way as the loop itself (straight on counts), and
    // no vertex comes twice.
    bool Convex(const std::vector<FaceVertex>& loop) const {
        const std::size_t n = loop.size();
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t k = i + 1; k < n; ++k) {
                if (loop[i].VertexIndex == loop[k].VertexIndex) return false;
            }
        }
        D3 newell;
        for (std::size_t i = 0; i < n; ++i) {
            const D3 a = At(loop[i]), b = At(loop[(i + 1) % n]);
            newell.X += (a.Y - b.Y) * (a.Z + b.Z);
            newell.Y += (a.Z - b.Z) * (a.X + b.X);
            newell.Z += (a.X - b.X) * (a.Y + b.Y);
        }
        const double len = std::sqrt(Dot(newell, newell));
        if (!(len > 0.0)) return false;
        const D3 unit{newell.X / len, newell.Y / len, newell.Z / len};
        for (std::size_t i = 0; i < n; ++i) {
            const D3 a = At(loop[(i + n - 1) % n]), b = At(loop[i]), c = At(loop[(i + 1) % n]);
            if (!(Dot(Cross(Minus(b, a), Minus(c, b)), unit) >= -turnTolerance_)) return false;
        }
        return true;
    }

    void Write() {
        sub_.Faces.clear();
        sub_.Corners.clear();
        for (Poly& p : polys_) {
            if (!p.Alive) continue;
            sub_.Faces.push_back(p.F);
            const std::span<const FaceVertex> c = CornersOf(p);
            sub_.Corners.insert(sub_.Corners.end(), c.begin(), c.end());
        }
    }

    SubObject& sub_;
    int max_;
    double planeTolerance_ = 0, turnTolerance_ = 0;
    std::vector<Poly> polys_;
    std::vector<FaceVertex> pool_, joined_;
    std::vector<std::size_t> outStart_, outPoly_, owner_;
    std::vector<std::int32_t> outTo_;
};

}  // namespace

int MergeCoplanarTriangles(SubObject& sub, int maxCorners) {
    if (sub.Faces.size() < 2) return 0;
    for (const FaceVertex& c : sub.Corners) {
        if (c.VertexIndex < 0 || c.VertexIndex >= sub.VertexCount()) return 0;
    }
    return Merger(sub, maxCorners).Run();
}

}  // namespace mw
