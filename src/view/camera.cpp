#include "view/camera.h"

#include <cmath>

namespace mw {
namespace {

const float kHalfFovTan = static_cast<float>(std::tan(12.5 * 3.14159265358979 / 180.0));

float Sign(float v) {
    return v > 0 ? 1.0f : (v < 0 ? -1.0f : 0.0f);
}

}  // namespace

void Camera::FitView(float r) {
    AngleY = AngleX = 30.0f;
    PanX = PanY = 0.0f;
    Zoom = -r / kHalfFovTan;
    if (Zoom > -1.0f) Zoom = -1.0f;
    ZoomLimit = 5.0f * Zoom;
    ZoomStep = std::fabs(Zoom) / 200.0f;
}

bool Camera::UpdateCameraLimits(float r) {
    ZoomLimit = -5.0f * r / kHalfFovTan;
    if (ZoomLimit > -5.0f) ZoomLimit = -5.0f;
    ZoomStep = std::fabs(ZoomLimit) / 1000.0f;
    if (std::fabs(PanX) > r) PanX = Sign(PanX) * r;
    if (std::fabs(PanY) > r) PanY = Sign(PanY) * r;
    if (Zoom < ZoomLimit) {
        Zoom = ZoomLimit;
        return true;
    }
    return false;
}

float Camera::PanScale() const {
    return 200.0f / std::fabs(Zoom / 2.0f);
}

void Camera::Anchor(float x, float y) {
    RotAnchorX = x - AngleY;
    RotAnchorY = y - AngleX;
    PanAnchorX = x - PanScale() * PanX;
    PanAnchorY = y - PanScale() * (-PanY);
    ZoomAnchor = y - Zoom / ZoomStep;
}

void Camera::ReanchorX(float x) {
    RotAnchorX = x - AngleY;
    PanAnchorX = x - PanScale() * PanX;
}

void Camera::ReanchorY(float y) {
    RotAnchorY = y - AngleX;
    PanAnchorY = y - PanScale() * (-PanY);
    ZoomAnchor = y - Zoom / ZoomStep;
}

void Camera::ClampPan(float x, float y, float r) {
    const float most = r * std::fabs(Zoom / 8.0f);
    if (std::fabs(PanX) > most) {
        PanX = Sign(PanX) * most;
        PanAnchorX = x - PanScale() * PanX;
    }
    if (std::fabs(PanY) > most) {
        PanY = Sign(PanY) * most;
        PanAnchorY = y - PanScale() * (-PanY);
    }
}

bool Camera::Drag(ViewMode mode, float x, float y, float r) {
    switch (mode) {
        case ViewMode::Zoom:
            Zoom = (y - ZoomAnchor) * ZoomStep;
            if (Zoom < ZoomLimit) {
                Zoom = ZoomLimit;
                ZoomAnchor = y - Zoom / ZoomStep;
            } else if (Zoom > -1.0f) {
                Zoom = -1.0f;
                ZoomAnchor = y - Zoom / ZoomStep;
            }
            ClampPan(x, y, r);
            return true;
        case ViewMode::Rotate:
            AngleY = x - RotAnchorX;
            AngleX = y - RotAnchorY;
            return false;
        case ViewMode::Pan:
            PanX = (x - PanAnchorX) / PanScale();
            PanY = -(y - PanAnchorY) / PanScale();
            ClampPan(x, y, r);
            return false;
        case ViewMode::Selection:
            break;
    }
    return false;
}

ClipPlanes ProjectionPlanes(float zoom, float radius) {
    ClipPlanes p;
    p.Near = std::fabs(zoom) - 2.0 * radius;
    p.Far = std::fabs(zoom) + 2.0 * radius + 1.0;
    if (p.Near < 1.0) p.Near = 1.0;
    if (p.Far < p.Near) p.Far = p.Near + 10.0;
    return p;
}

}  // namespace mw
