// Draws a scene cache with OpenGL 3.3 core: one vertex array and buffer per batch and primitive
// kind, uploaded only when the cache says that batch changed, faces lit by a headlight, the
// selected items again in the highlight colour, and a bounding box on top. Counts its draw
// calls and uploads per frame.
#pragma once

#include <QOpenGLFunctions_3_3_Core>
#include <QOpenGLShaderProgram>
#include <memory>
#include <unordered_set>
#include <vector>

#include <obsidra/hc.h>

#include "host/view/camera.h"
#include "host/view/scene_cache.h"

class HSelectionSet;

namespace obsidra::host::view {

struct FrameStats {
    int drawCalls = 0;
    int uploads = 0; // buffers filled
};

class GlRenderer : protected QOpenGLFunctions_3_3_Core {
public:
    GlRenderer() = default;
    GlRenderer(const GlRenderer&) = delete;
    GlRenderer& operator=(const GlRenderer&) = delete;

    // With the context current: false when it offers no OpenGL 3.3 core or a shader fails.
    bool Initialize();
    bool IsInitialized() const { return m_program != nullptr; }
    // With the context current: frees every buffer (before the context goes away).
    void Release();
    // Uploads what changed in the cache and draws a frame. overlay may be empty. The items of
    // xRay (geometry keys) are drawn as a see-through grey after everything else; highlighted
    // items (and segments) again in cyan, the selection in orange.
    void Render(SceneCache& cache, const Camera& camera, HSelectionSet* selection,
                const Box& overlay, const std::unordered_set<HC_KEY>& xRay = {},
                const std::unordered_set<HC_KEY>& highlighted = {});
    const FrameStats& LastFrame() const { return m_stats; }

private:
    static constexpr int kKinds = DrawBatch::kKinds;
    struct GpuBatch {
        unsigned vao[kKinds] = {};
        unsigned vbo[kKinds] = {};
        int vertices[kKinds] = {};
    };

    void CreateArray(unsigned& vao, unsigned& vbo);
    void Upload(const SceneCache& cache, int id);
    void Free(GpuBatch& batch);
    void Draw(const GpuBatch& batch, int kind, int first, int count);
    void DrawHighlight(const SceneCache& cache, const std::unordered_set<HC_KEY>& selected,
                       const float (&colour)[3]);
    // Draws the runs of one batch's primitives of a kind whose item passes the test.
    template <class Test>
    void DrawRuns(const SceneCache& cache, int id, int kind, Test&& passes);
    void DrawOverlay(const Box& box);

    std::unique_ptr<QOpenGLShaderProgram> m_program;
    std::vector<GpuBatch> m_batches; // by instance id
    GpuBatch m_overlay;
    Box m_overlayBox;
    FrameStats m_stats;
    int m_overrideLocation = -1;
    int m_shadedLocation = -1;
};

} // namespace obsidra::host::view
