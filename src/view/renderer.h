// Draws the open model with OpenGL 1.1 fixed-function calls into the current context: the
// model walked in save-slot order with its offsets and animation, the display aids, the
// highlight colours, the selection axes and the corner tripod, and the picking of Selection
// mode by the depth buffer under the mouse. Geometry is compiled into three display lists
// per sub-object (flat, smooth, textured) when the model changes, never per frame.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gamedata/texture_loader.h"
#include "model/model_data.h"
#include "view/background.h"
#include "view/view_state.h"

namespace mw {

class Renderer : public TextureUploader {
  public:
    Renderer() = default;
    Renderer(const Renderer&) = delete;
    Renderer& operator=(const Renderer&) = delete;

    // The default state, light, material, the label glyphs and the tripod lists. Returns
    // false when the label font could not be made (labels are then left out).
    bool InitGLState();
    // Frees every GL object this renderer made; the context must be current.
    void ReleaseGL();

    // Perspective and viewport for a drawing area; a height of 0 counts as 1.
    void ResizeViewport(int width, int height, ClipPlanes planes);
    int ViewportWidth() const { return width_; }
    int ViewportHeight() const { return height_; }

    // Compiles the three lists of every sub-object; `textures` says which model textures
    // are blended (empty: none).
    void BuildSubObjectLists(const ModelData& model, const std::vector<TextureSlot>& textures);
    void CompileSubObject(const ModelData& model, int s);

    // Texture uploader: one texture name per model texture.
    void AllocModelTextures(int count) override;
    void UploadModelTexture(int texture, int width, int height,
                            const std::uint32_t* pixels) override;
    // A placeholder texture in every slot, for a model whose textures were not resolved.
    void UploadPlaceholders(int count, const std::vector<std::uint32_t>& missing);
    // Replaces texture t's image by its current animation frame from the frame store.
    void UploadTextureFrame(int t, const TextureSlot& slot, const FrameStore& frames);
    // Moves texture t by (u, v) of its size (sliding textures).
    void SetTextureOffset(int t, float u, float v);
    // Linear or nearest filtering for every model texture, now and for later uploads.
    void ApplyFiltering(bool bilinear);

    // The glow sprites' texture (RGBA pixels, rows from the top).
    void UploadGlowTexture(int width, int height, const std::uint32_t* pixels);
    // The picture behind the model; an empty image removes it.
    void UploadBackground(const BackgroundImage* image);
    bool BackgroundLoaded() const { return backgroundLoaded_; }

    // Draws model texture t over the whole of a width x height viewport (the textures
    // panel's preview), first row at the top.
    void RenderTexturePreview(int t, int width, int height);

    // One frame, normal or red/cyan by the display settings. Buffers are not swapped.
    void RenderFrame(const ModelData& model, const FrameInput& in);

    // The sub-object under the mouse in the last frame drawn with picking, or -1.
    int PickedSubObject() const { return picked_; }

    // Display-list compilations so far (to show that frames do not rebuild lists).
    int ListBuilds() const { return listBuilds_; }

  private:
    void DrawModel(const ModelData& model, const FrameInput& in);
    void DrawSubObjectAids(const ModelData& model, const FrameInput& in, int s);
    void DrawPoints(const ModelData& model, const FrameInput& in, int s);
    void DrawNormals(const ModelData& model, const FrameInput& in, int e);
    void DrawTrajectories(const ModelData& model, const FrameInput& in);
    void DrawAxisOverlay(const FrameInput& in);
    void DrawTripod(const FrameInput& in, double x, double y);
    void DrawFacing(const ModelData& model, const FrameInput& in, bool picking);
    void DrawGlows(const ModelData& model, const FrameInput& in, bool picking);
    void SetBlendForTexture(int t);
    void DrawViewportTexture(unsigned texture, bool firstRowAtTop);
    bool ColourChanged(const FrameInput& in, std::uint32_t& reference) const;
    void DrawSelectionAxes(const FrameInput& in);
    void ApplyAnimation(const ModelData& model, const FrameInput& in, int s, float posFrame,
                        float rotFrame, bool rotator);
    void BuildAxisLists();
    bool BuildGlyphs();
    void DrawLabel(const char* text);
    void CompileFaces(const SubObject& sub, bool smooth);
    void CompileTextured(const SubObject& sub);
    float ReadDepth(const FrameInput& in) const;
    void SetColour(PaletteColour c) const;

    int width_ = 1, height_ = 1;
    ClipPlanes planes_;
    unsigned flatBase_ = 0, smoothBase_ = 0, texturedBase_ = 0;
    int listCount_ = 0;
    unsigned axisLists_ = 0;
    unsigned glyphBase_ = 0;
    bool haveFont_ = false;
    std::vector<unsigned> textures_;
    unsigned texMatrixBase_ = 0;
    int texMatrixCount_ = 0;
    bool bilinear_ = false;
    unsigned glowTexture_ = 0;
    unsigned backgroundTexture_ = 0;
    unsigned backgroundList_ = 0;
    bool backgroundLoaded_ = false;
    struct Effect {
        int s;
        Vector3 origin;  // eye space
    };
    std::vector<Effect> facing_, glows_;
    std::vector<bool> blended_;  // per model texture
    std::vector<std::uint32_t> gamFlags_;
    std::vector<float> gamAlpha_;
    int picked_ = -1;
    int listBuilds_ = 0;
    double hiliteMatrix_[16]{};
    float trajectoryMatrix_[16]{};
};

}  // namespace mw
