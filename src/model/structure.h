// Structural edits of the model: deleting sub-objects and points, battery edits, merging a
// sub-object into another and changing parents. Sub-object records are never removed or
// renumbered; point lists and batteries are compacted.
// Callers run CreatePushPop (and MoveSOBJ where positions changed) afterwards.
#pragma once

#include "model/model_data.h"

namespace mw {

// Removes sub-object s (a slot head) and its descendants, their points and turret entries.
// Returns false, changing nothing, when s heads no save slot.
bool DeleteSOBJ(ModelData& model, int s);

// Removes point i of a list; deleting a gun point also removes it from every battery.
// Returns false when i is out of range.
bool DeletePNT(ModelData& model, PointType type, int i);

void RemoveWBATturret(ModelData& model, int s);
void RemoveWBATGPNT(ModelData& model, int g);
void RemoveSingleWBATGPNT(ModelData& model, int battery, int g);
void RemoveSingleWBATturret(ModelData& model, int battery, int s);
bool DeleteWBAT(ModelData& model, int battery);

// Merges A's geometry into B, expressed in B's frame; A's points move with it but keep A
// as their parent until the caller gives them B. Refused (false, nothing changed) when A
// or B heads no slot, A is B, or B's column has no room for A's members.
bool SOBJCombine(ModelData& model, int a, int b);

// A merge with the follow-up that the model tree performs: A's points and child
// sub-objects are given B, and the draw order is rebuilt. Also refused when B lies in A's
// subtree.
bool CombineAndAdopt(ModelData& model, int a, int b);

// Gives point i of a list the parent sub-object s; the position is not changed.
bool ChangePNTParent(ModelData& model, PointType type, int i, int s);

// Makes P (or nothing, for -1) the parent of S, keeping S where it is in model space and
// moving S's block of save slots right after P's. Refused when S heads no slot, P is
// neither -1 nor a slot head, or P is S or one of its descendants.
bool ChangeSOBJParent(ModelData& model, int s, int p);

// True when d lies in the subtree of s (s itself included).
bool IsInSubtree(const ModelData& model, int s, int d);

}  // namespace mw

namespace mw {

// "Convert to": turns childless sub-object s (one with a parent) into a point of `type`
// owned by its parent, at the centre of its box in the parent's frame, pointing along its
// first face's normal (made unit length). Returns the new point's index, or -1 (nothing
// changed) when s cannot be converted or the list is full.
int ConvertSOBJToPNT(ModelData& model, int s, PointType type);

// Moves point i of `from` to the end of the list of `to`. Returns its new index, or -1
// (nothing changed) when the types are equal, i is out of range or the list is full.
int ConvertPNTType(ModelData& model, PointType from, int i, PointType to);

// The sub-object whose slot comes just before s's (its head), or -1 when s is in the first
// slot: what the tree selects after s is deleted.
int SelectionAfterDelete(const ModelData& model, int s);

}  // namespace mw

namespace mw {
// True when sub-object s has child sub-objects or owns points (its tree node has children).
bool HasTreeChildren(const ModelData& model, int s);
}  // namespace mw
