// The viewport's camera: two angles, a pan offset and a zoom distance, with the rules that
// map mouse drags to them and the limits that keep the model in view.
#pragma once

namespace mw {

enum class ViewMode { Selection = 0, Zoom = 1, Rotate = 2, Pan = 3 };

struct Camera {
    float AngleY = 30.0f;
    float AngleX = 30.0f;
    float PanX = 0.0f;
    float PanY = 0.0f;
    float Zoom = -150.0f;  // always negative
    float ZoomStep = 0.01f;
    float ZoomLimit = -9999.99f;

    // Drag anchors, so that a drag continues from the camera as it is.
    float RotAnchorX = 0, RotAnchorY = 0, PanAnchorX = 0, PanAnchorY = 0, ZoomAnchor = 0;

    // Resets the camera to show a model of radius r.
    void FitView(float r);
    // Recomputes the zoom limit and clamps the camera after the radius changed. Returns true
    // when the zoom was clamped (the projection must follow).
    bool UpdateCameraLimits(float r);

    // Sets the anchors at a button press at (x, y).
    void Anchor(float x, float y);
    // A drag to (x, y) in a mode; returns true when the projection must follow (zoom).
    bool Drag(ViewMode mode, float x, float y, float r);
    // After the cursor was wrapped to the other side, continue the drag from (x, y).
    void ReanchorX(float x);
    void ReanchorY(float y);

  private:
    void ClampPan(float x, float y, float r);
    float PanScale() const;
};

// Clipping planes of the perspective projection for a camera distance and a model radius.
struct ClipPlanes {
    double Near = 1.0;
    double Far = 10.0;
};
ClipPlanes ProjectionPlanes(float zoom, float radius);

inline constexpr double kFieldOfView = 25.0;

}  // namespace mw
