#include "model/structure.h"

#include <algorithm>

#include "model/geometry.h"

namespace mw {
namespace {

// Removes the first occurrence of value; later entries move down.
bool RemoveEntry(std::vector<std::int32_t>& list, std::int32_t value) {
    const auto it = std::find(list.begin(), list.end(), value);
    if (it == list.end()) return false;
    list.erase(it);
    return true;
}

WeaponBattery* Battery(ModelData& model, int b) {
    if (b < 0 || b >= static_cast<int>(model.Batteries.size())) return nullptr;
    return &model.Batteries[static_cast<std::size_t>(b)];
}

void DeletePointsOf(ModelData& model, int s) {
    for (PointType t : kPointTypes) {
        auto& list = model.Points(t);
        for (int i = static_cast<int>(list.size()) - 1; i >= 0; --i) {
            if (list[static_cast<std::size_t>(i)].Parent == s) DeletePNT(model, t, i);
        }
    }
}

// Number of slots from slot k on that hold k's head and its descendants (pre-order).
int BlockSize(const ModelData& model, int k) {
    const std::vector<int> slotOf = SlotTable(model);
    int m = 1;
    for (int j = k + 1; j < model.SubObjectCount(); ++j) {
        const int parent = model.Sub(model.Head(j)).Parent;
        const int parentSlot =
            model.IsRecord(parent) ? slotOf[static_cast<std::size_t>(parent)] : -1;
        if (parentSlot < k) break;
        ++m;
    }
    return m;
}

}  // namespace

bool DeleteSOBJ(ModelData& model, int s) {
    const int k = GetArrayIndex(model, s);
    if (k < 0) return false;
    const int m = BlockSize(model, k);
    for (int j = k + 1; j < k + m; ++j) {
        const int h = model.Head(j);
        RemoveWBATturret(model, h);
        DeletePointsOf(model, h);
    }
    auto& table = model.MergeTable;
    table.erase(table.begin() + k, table.begin() + k + m);
    RemoveWBATturret(model, s);
    DeletePointsOf(model, s);
    return true;
}

bool DeletePNT(ModelData& model, PointType type, int i) {
    auto& list = model.Points(type);
    if (i < 0 || i >= static_cast<int>(list.size())) return false;
    if (type == PointType::GPNT) RemoveWBATGPNT(model, i);
    // Attach points and their normals go in pairs when there are as many of each: the
    // game's loader stores normal i with point i, so a lone normal would run past them.
    const bool paired = type == PointType::ATCH && model.AttachNormals.size() == list.size();
    list.erase(list.begin() + i);
    if (paired) model.AttachNormals.erase(model.AttachNormals.begin() + i);
    return true;
}

void RemoveWBATturret(ModelData& model, int s) {
    for (WeaponBattery& b : model.Batteries)
        RemoveEntry(b.Turrets, s);
}

void RemoveWBATGPNT(ModelData& model, int g) {
    for (WeaponBattery& b : model.Batteries)
        RemoveEntry(b.GunPoints, g);
    // The gun point list is about to close the gap.
    for (WeaponBattery& b : model.Batteries) {
        for (std::int32_t& v : b.GunPoints) {
            if (v > g) --v;
        }
    }
}

void RemoveSingleWBATGPNT(ModelData& model, int battery, int g) {
    if (WeaponBattery* b = Battery(model, battery)) RemoveEntry(b->GunPoints, g);
}

void RemoveSingleWBATturret(ModelData& model, int battery, int s) {
    if (WeaponBattery* b = Battery(model, battery)) RemoveEntry(b->Turrets, s);
}

bool DeleteWBAT(ModelData& model, int battery) {
    if (Battery(model, battery) == nullptr) return false;
    model.Batteries.erase(model.Batteries.begin() + battery);
    return true;
}

bool SOBJCombine(ModelData& model, int a, int b) {
    const int ka = GetArrayIndex(model, a);
    const int kb = GetArrayIndex(model, b);
    if (ka < 0 || kb < 0 || a == b) return false;
    auto& columnA = model.MergeTable[static_cast<std::size_t>(ka)];
    auto& columnB = model.MergeTable[static_cast<std::size_t>(kb)];
    if (columnA.size() + columnB.size() > static_cast<std::size_t>(kMaxColumnEntries)) {
        return false;
    }

    const Vector3 delta = Subtract(WorldOffset(model, a), WorldOffset(model, b));
    SubObject& target = model.Sub(b);
    for (int member : columnA) {
        for (Vertex& v : model.Sub(member).Vertices) {
            v.Position = Add(v.Position, delta);
            target.BoxMin = ComponentMin(target.BoxMin, v.Position);
            target.BoxMax = ComponentMax(target.BoxMax, v.Position);
            if (Length(v.Position) > target.Radius) target.Radius = Length(v.Position);
            target.Center = Midpoint(target.BoxMin, target.BoxMax);
        }
    }
    for (PointType t : kPointTypes) {
        for (ModelPoint& p : model.Points(t)) {
            if (p.Parent == a) p.Position = Add(p.Position, delta);
        }
    }
    // The merged members are no longer sub-objects of their own: a battery cannot name them
    // as turrets (the file would have no slot to write for them).
    for (int member : columnA)
        RemoveWBATturret(model, member);
    columnB.insert(columnB.end(), columnA.begin(), columnA.end());
    model.MergeTable.erase(model.MergeTable.begin() + ka);
    return true;
}

bool CombineAndAdopt(ModelData& model, int a, int b) {
    if (IsInSubtree(model, a, b) || !SOBJCombine(model, a, b)) return false;
    for (PointType t : kPointTypes) {
        auto& list = model.Points(t);
        for (int i = static_cast<int>(list.size()) - 1; i >= 0; --i) {
            if (list[static_cast<std::size_t>(i)].Parent == a) ChangePNTParent(model, t, i, b);
        }
    }
    // The last child first, as the tree moves its nodes.
    for (int slot = model.SubObjectCount() - 1; slot >= 0; --slot) {
        const int child = model.Head(slot);
        if (model.Sub(child).Parent == a && ChangeSOBJParent(model, child, b)) {
            slot = model.SubObjectCount();  // the slots moved; look again from the end
        }
    }
    CreatePushPop(model);
    return true;
}

bool ChangePNTParent(ModelData& model, PointType type, int i, int s) {
    auto& list = model.Points(type);
    if (i < 0 || i >= static_cast<int>(list.size())) return false;
    list[static_cast<std::size_t>(i)].Parent = s;
    return true;
}

bool IsInSubtree(const ModelData& model, int s, int d) {
    for (std::size_t steps = 0; model.IsRecord(d) && steps <= model.SubObjects.size(); ++steps) {
        if (d == s) return true;
        d = model.Sub(d).Parent;
    }
    return false;
}

bool ChangeSOBJParent(ModelData& model, int s, int p) {
    const int a = GetArrayIndex(model, s);
    if (a < 0) return false;
    if (p != -1 && (GetArrayIndex(model, p) < 0 || IsInSubtree(model, s, p))) return false;

    const Vector3 ws = WorldOffset(model, s);
    const Vector3 wp = p == -1 ? Vector3{} : WorldOffset(model, p);
    model.Sub(s).Offset = Subtract(ws, wp);

    auto& table = model.MergeTable;
    const int m = BlockSize(model, a);
    std::vector<std::vector<std::int32_t>> block(table.begin() + a, table.begin() + a + m);
    table.erase(table.begin() + a, table.begin() + a + m);
    const int b = GetArrayIndex(model, p);  // -1 puts the block first
    table.insert(table.begin() + (b + 1), block.begin(), block.end());

    model.Sub(s).Parent = p;
    return true;
}

}  // namespace mw

namespace mw {
namespace {

bool HasRoom(const ModelData& model, PointType type) {
    return static_cast<int>(model.Points(type).size()) < PointLimit(type);
}

}  // namespace

bool HasTreeChildren(const ModelData& model, int s) {
    for (int slot = 0; slot < model.SubObjectCount(); ++slot) {
        if (model.Sub(model.Head(slot)).Parent == s) return true;
    }
    for (PointType t : kPointTypes) {
        for (const ModelPoint& p : model.Points(t)) {
            if (p.Parent == s) return true;
        }
    }
    return false;
}

int ConvertSOBJToPNT(ModelData& model, int s, PointType type) {
    if (GetArrayIndex(model, s) < 0 || !HasRoom(model, type)) return -1;
    const SubObject& sub = model.Sub(s);
    if (sub.Parent == -1 || HasTreeChildren(model, s)) return -1;
    ModelPoint point;
    point.Parent = sub.Parent;
    point.Position = Add(sub.Offset, Midpoint(sub.BoxMin, sub.BoxMax));
    if (!sub.Faces.empty()) point.Normal = Normalize(sub.Faces.front().Normal);
    auto& list = model.Points(type);
    list.push_back(point);
    DeleteSOBJ(model, s);
    CreatePushPop(model);
    return static_cast<int>(list.size()) - 1;
}

int ConvertPNTType(ModelData& model, PointType from, int i, PointType to) {
    if (from == to || !HasRoom(model, to)) return -1;
    const auto& source = model.Points(from);
    if (i < 0 || i >= static_cast<int>(source.size())) return -1;
    const ModelPoint copy = source[static_cast<std::size_t>(i)];
    DeletePNT(model, from, i);
    auto& list = model.Points(to);
    list.push_back(copy);
    return static_cast<int>(list.size()) - 1;
}

int SelectionAfterDelete(const ModelData& model, int s) {
    const int k = GetArrayIndex(model, s);
    return k > 0 ? model.Head(k - 1) : -1;
}

}  // namespace mw
