#include "model/geometry.h"

#include <cmath>

namespace mw {
namespace {

// Every vertex of every member of save slot k.
template <typename Fn>
void ForEachSlotVertex(ModelData& model, int slot, Fn&& fn) {
    for (int member : model.MergeTable[static_cast<std::size_t>(slot)]) {
        for (Vertex& v : model.Sub(member).Vertices)
            fn(v);
    }
}

template <typename Fn>
void ForEachPoint(ModelData& model, Fn&& fn) {
    for (PointType t : kPointTypes) {
        for (ModelPoint& p : model.Points(t))
            fn(p);
    }
}

}  // namespace

int GetArrayIndex(const ModelData& model, int s) {
    if (s < 0) return -1;
    for (int k = 0; k < model.SubObjectCount(); ++k) {
        if (model.Head(k) == s) return k;
    }
    return -1;
}

std::vector<int> SlotTable(const ModelData& model) {
    std::vector<int> slots(model.SubObjects.size(), -1);
    for (int k = model.SubObjectCount() - 1; k >= 0; --k) {
        if (model.IsRecord(model.Head(k))) slots[static_cast<std::size_t>(model.Head(k))] = k;
    }
    return slots;
}

Vector3 WorldOffset(const ModelData& model, int s) {
    Vector3 w;
    // Bounded by the record count so that a broken hierarchy cannot loop.
    for (std::size_t steps = 0; model.IsRecord(s) && steps <= model.SubObjects.size(); ++steps) {
        w = Add(w, model.Sub(s).Offset);
        s = model.Sub(s).Parent;
    }
    return w;
}

void CreatePushPop(ModelData& model) {
    const int n = model.SubObjectCount();
    model.PushFlags.assign(model.SubObjects.size(), false);
    model.PopFlags.assign(model.SubObjects.size(), false);
    auto push = [&](int s) { return model.PushFlags[static_cast<std::size_t>(s)]; };

    bool marker = false;
    for (int i = n - 1; i >= 0; --i) {
        if (model.Sub(model.Head(i)).Parent == -1) {
            push(model.Head(i)) = marker;
            marker = true;
        }
    }
    // Among the children of one slot head, the one in the highest slot needs no saved
    // transform; every other child does.
    const std::vector<int> slotOf = SlotTable(model);
    std::vector<bool> seenChild(model.SubObjects.size(), false);
    for (int i = n - 1; i >= 0; --i) {
        const int parent = model.Sub(model.Head(i)).Parent;
        if (!model.IsRecord(parent)) continue;
        const int parentSlot = slotOf[static_cast<std::size_t>(parent)];
        if (parentSlot < 0 || parentSlot > i) continue;
        push(model.Head(i)) = seenChild[static_cast<std::size_t>(parent)];
        seenChild[static_cast<std::size_t>(parent)] = true;
    }
    for (int j = 0; j + 1 < n; ++j) {
        if (model.Sub(model.Head(j + 1)).Parent != model.Head(j)) {
            model.PopFlags[static_cast<std::size_t>(model.Head(j))] = true;
        }
    }
}

void MoveSOBJ(ModelData& model) {
    if (model.PushFlags.size() != model.SubObjects.size()) CreatePushPop(model);
    ModelHeader& h = model.Header;
    h.Min = {99999.0f, 99999.0f, 99999.0f};
    h.Max = {-99999.0f, -99999.0f, -99999.0f};
    h.Radius = 0.0f;
    Vector3 c;
    std::vector<Vector3> stack;
    for (int i = 0; i < model.SubObjectCount(); ++i) {
        const int head = model.Head(i);
        if (model.PushFlags[static_cast<std::size_t>(head)]) stack.push_back(c);
        c = Add(c, model.Sub(head).Offset);
        ForEachSlotVertex(model, i, [&](const Vertex& v) {
            const Vector3 p = Add(v.Position, c);
            h.Min = ComponentMin(h.Min, p);
            h.Max = ComponentMax(h.Max, p);
            if (Length(p) > h.Radius) h.Radius = Length(p);
        });
        if (model.PopFlags[static_cast<std::size_t>(head)] && !stack.empty()) {
            c = stack.back();
            stack.pop_back();
        }
    }
}

void MovePivot(ModelData& model, int s, Vector3 pivotDelta) {
    const int k = GetArrayIndex(model, s);
    if (k < 0) return;
    SubObject& sub = model.Sub(s);
    sub.Radius = 0.0f;
    sub.BoxMin = {99999.0f, 99999.0f, 99999.0f};
    sub.BoxMax = {-99999.0f, -99999.0f, -99999.0f};
    ForEachSlotVertex(model, k, [&](Vertex& v) {
        v.Position = Subtract(v.Position, pivotDelta);
        if (Length(v.Position) > sub.Radius) sub.Radius = Length(v.Position);
        sub.BoxMin = ComponentMin(sub.BoxMin, v.Position);
        sub.BoxMax = ComponentMax(sub.BoxMax, v.Position);
        sub.Center = Midpoint(sub.BoxMin, sub.BoxMax);
    });
    ForEachPoint(model, [&](ModelPoint& p) {
        if (p.Parent == s) p.Position = Subtract(p.Position, pivotDelta);
    });
    for (int i = 0; i < model.SubObjectCount(); ++i) {
        SubObject& child = model.Sub(model.Head(i));
        if (child.Parent == s) child.Offset = Subtract(child.Offset, pivotDelta);
    }
}

namespace {

// A unit normal, or (0, 0, 1) where there is none to be had: a stored face normal that is
// infinite or not a number would otherwise spread 0/0 into every vertex it touches.
Vector3 UnitNormal(Vector3 v) {
    const Vector3 n = Normalize(v);
    const bool finite = std::isfinite(n.X) && std::isfinite(n.Y) && std::isfinite(n.Z);
    return finite ? n : Vector3{0.0f, 0.0f, 1.0f};
}

}  // namespace

void RecalcVertexNormals(ModelData& model) {
    for (SubObject& sub : model.SubObjects) {
        if (sub.Vertices.empty()) continue;
        std::vector<float> uses(sub.Vertices.size(), 0.0f);
        for (Vertex& v : sub.Vertices)
            v.Normal = {};
        std::size_t corner = 0;
        for (Face& face : sub.Faces) {
            face.Normal = UnitNormal(face.Normal);
            for (int c = 0; c < face.VertexCount && corner < sub.Corners.size(); ++c, ++corner) {
                const auto vi = static_cast<std::size_t>(sub.Corners[corner].VertexIndex);
                if (vi >= sub.Vertices.size()) continue;
                uses[vi] += 1.0f;
                sub.Vertices[vi].Normal = Add(sub.Vertices[vi].Normal, face.Normal);
            }
        }
        for (std::size_t i = 0; i < sub.Vertices.size(); ++i) {
            sub.Vertices[i].Normal = UnitNormal(DivideBy(sub.Vertices[i].Normal, uses[i]));
        }
    }
}

void CalcRotMatrix(ModelData& model, int s) {
    if (!model.IsRecord(s)) return;
    auto& keys = model.Sub(s).Rot.Keys;
    for (std::size_t k = 0; k < keys.size(); ++k) {
        RotKey& key = keys[k];
        if (Length(key.Axis) > 0.0f) key.Axis = NormalizeAxis(key.Axis);
        if (k == 0) {
            key.Matrix = IdentityMatrix();
        } else {
            key.Matrix = Concatenate3(AxisAngleMatrix(KeyAngleToRadians(key.Angle), key.Axis),
                                      keys[k - 1].Matrix);
        }
    }
}

ScaleResult ScaleModel(ModelData& model, float percent) {
    const float f = percent / 100.0f;
    const float radius = model.Header.Radius * f;
    if (radius < 0.1f) return ScaleResult::TooSmall;
    if (radius > 90000.0f) return ScaleResult::TooLarge;

    ModelHeader& h = model.Header;
    h.Max = Scale(h.Max, f);
    h.Min = Scale(h.Min, f);
    h.Radius *= f;
    for (SubObject& sub : model.SubObjects) {
        sub.Center = Scale(sub.Center, f);
        sub.BoxMax = Scale(sub.BoxMax, f);
        sub.BoxMin = Scale(sub.BoxMin, f);
        sub.Offset = Scale(sub.Offset, f);
        sub.Radius *= f;
        sub.GlowSize *= f;
        for (Vertex& v : sub.Vertices)
            v.Position = Scale(v.Position, f);
        if (model.HasPANI) {
            for (PosKey& key : sub.Pos.Keys)
                key.Position = Scale(key.Position, f);
        }
    }
    ForEachPoint(model, [&](ModelPoint& p) { p.Position = Scale(p.Position, f); });
    if (model.Special) {
        model.Special->Position = Scale(model.Special->Position, f);
        model.Special->Radius *= f;
    }
    return ScaleResult::Done;
}

}  // namespace mw
