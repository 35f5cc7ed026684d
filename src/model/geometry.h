// Derived geometry of the model: draw-order marks, box and radius, pivot moves, vertex
// normals, rotation-key matrices and uniform scaling.
#pragma once

#include "model/model_data.h"

namespace mw {

// The save slot headed by sub-object `s`, or -1 (a merged member, or -1 itself).
int GetArrayIndex(const ModelData& model, int s);

// GetArrayIndex for every sub-object record at once.
std::vector<int> SlotTable(const ModelData& model);

// World offset of a sub-object: its Offset plus those of all its ancestors.
Vector3 WorldOffset(const ModelData& model, int s);

// Rebuilds PushFlags and PopFlags for the renderer's walk over the save slots.
void CreatePushPop(ModelData& model);

// Recomputes the model's Min, Max and Radius in model space from the save slots.
void MoveSOBJ(ModelData& model);

// After sub-object s's Offset changed by `pivotDelta`, moves its geometry, points and
// child offsets back so that everything stays where it was in model space.
void MovePivot(ModelData& model, int s, Vector3 pivotDelta);

void RecalcVertexNormals(ModelData& model);

// Recomputes the orientation matrices of s's rotation keys.
void CalcRotMatrix(ModelData& model, int s);

enum class ScaleResult { Done = 0, TooSmall = 1, TooLarge = 2 };
ScaleResult ScaleModel(ModelData& model, float percent);

}  // namespace mw
