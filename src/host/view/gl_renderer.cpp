#include "host/view/gl_renderer.h"

#include <cstddef>

#include "mvo/selection_set.h"

namespace obsidra::host::view {

namespace {

const char* kVertexShader = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in vec4 colour;
uniform mat4 viewProjection;
out vec3 worldPosition;
out vec4 vertexColour;
void main() {
    worldPosition = position;
    vertexColour = colour;
    gl_Position = viewProjection * vec4(position, 1.0);
    gl_PointSize = 7.0;
}
)";

// Faces take their normal from the screen-space slope of their position, so batches need no
// normals; a headlight and a little light from above keep walls apart from floors.
const char* kFragmentShader = R"(#version 330 core
in vec3 worldPosition;
in vec4 vertexColour;
uniform vec4 overrideColour;
uniform bool shaded;
uniform vec3 eye;
out vec4 fragmentColour;
void main() {
    vec4 colour = overrideColour.a > 0.0 ? overrideColour : vertexColour;
    if (shaded) {
        vec3 normal = normalize(cross(dFdx(worldPosition), dFdy(worldPosition)));
        float facing = abs(dot(normal, normalize(eye - worldPosition)));
        colour.rgb *= 0.3 + 0.55 * facing + 0.15 * abs(normal.z);
    }
    fragmentColour = colour;
}
)";

// By the batch's kinds; the last one is drawn blended, after everything else.
constexpr GLenum kModes[DrawBatch::kKinds] = {GL_TRIANGLES, GL_LINES, GL_POINTS, GL_TRIANGLES};
constexpr int kTranslucent = DrawBatch::kKinds - 1;

bool IsFaces(int kind) {
    return kind == 0 || kind == kTranslucent;
}

} // namespace

bool GlRenderer::Initialize() {
    if (!initializeOpenGLFunctions()) return false;
    auto program = std::make_unique<QOpenGLShaderProgram>();
    if (!program->addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexShader) ||
        !program->addShaderFromSourceCode(QOpenGLShader::Fragment, kFragmentShader) ||
        !program->link())
        return false;
    m_program = std::move(program);
    m_overrideLocation = m_program->uniformLocation("overrideColour");
    m_shadedLocation = m_program->uniformLocation("shaded");
    return true;
}

void GlRenderer::Free(GpuBatch& batch) {
    glDeleteBuffers(kKinds, batch.vbo);
    glDeleteVertexArrays(kKinds, batch.vao);
    batch = GpuBatch{};
}

void GlRenderer::Release() {
    if (!m_program) return;
    for (GpuBatch& batch : m_batches)
        Free(batch);
    m_batches.clear();
    Free(m_overlay);
    m_overlayBox = {};
    m_program.reset();
}

void GlRenderer::CreateArray(unsigned& vao, unsigned& vbo) {
    glGenVertexArrays(1, &vao);
    glGenBuffers(1, &vbo);
    glBindVertexArray(vao);
    glBindBuffer(GL_ARRAY_BUFFER, vbo);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex), nullptr);
    glEnableVertexAttribArray(1);
    glVertexAttribPointer(1, 4, GL_UNSIGNED_BYTE, GL_TRUE, sizeof(Vertex),
                          reinterpret_cast<const void*>(offsetof(Vertex, rgba)));
}

void GlRenderer::Upload(const SceneCache& cache, int id) {
    if (id >= static_cast<int>(m_batches.size())) m_batches.resize(id + 1);
    GpuBatch& gpu = m_batches[id];
    const auto& instances = cache.Instances();
    bool alive = id < static_cast<int>(instances.size()) && instances[id].alive;
    for (int kind = 0; kind < kKinds; ++kind) {
        const std::vector<Vertex>* vertices =
            alive ? &instances[id].batch.Kind(kind).vertices : nullptr;
        if (!vertices || vertices->empty()) {
            if (gpu.vbo[kind]) {
                glDeleteBuffers(1, &gpu.vbo[kind]);
                glDeleteVertexArrays(1, &gpu.vao[kind]);
                gpu.vbo[kind] = gpu.vao[kind] = 0;
            }
            gpu.vertices[kind] = 0;
            continue;
        }
        if (!gpu.vao[kind]) {
            CreateArray(gpu.vao[kind], gpu.vbo[kind]);
        } else {
            glBindBuffer(GL_ARRAY_BUFFER, gpu.vbo[kind]);
        }
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(vertices->size() * sizeof(Vertex)),
                     vertices->data(), GL_STATIC_DRAW);
        gpu.vertices[kind] = static_cast<int>(vertices->size());
        ++m_stats.uploads;
    }
    glBindVertexArray(0);
}

void GlRenderer::Draw(const GpuBatch& batch, int kind, int first, int count) {
    if (!batch.vao[kind] || count <= 0) return;
    if (IsFaces(kind)) m_program->setUniformValue(m_shadedLocation, true);
    glBindVertexArray(batch.vao[kind]);
    glDrawArrays(kModes[kind], first, count);
    if (IsFaces(kind)) m_program->setUniformValue(m_shadedLocation, false);
    ++m_stats.drawCalls;
}

template <class Test>
void GlRenderer::DrawRuns(const SceneCache& cache, int id, int kind, Test&& passes) {
    const Primitives& primitives = cache.Instances()[id].batch.Kind(kind);
    const auto& runs = primitives.runs;
    const int per = DrawBatch::kVerticesPer[kind];
    const int total = static_cast<int>(primitives.vertices.size()) / per;
    for (size_t r = 0; r < runs.size(); ++r) {
        if (!passes(runs[r].item)) continue;
        const int first = static_cast<int>(runs[r].first);
        const int end = r + 1 < runs.size() ? static_cast<int>(runs[r + 1].first) : total;
        Draw(m_batches[id], kind, first * per, (end - first) * per);
    }
}

void GlRenderer::Render(SceneCache& cache, const Camera& camera, HSelectionSet* selection,
                        const Box& overlay, const std::unordered_set<HC_KEY>& xRay,
                        const std::unordered_set<HC_KEY>& highlighted) {
    m_stats = {};
    for (int id : cache.TakeTouched())
        Upload(cache, id);

    glClearColor(0.93f, 0.94f, 0.96f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (!m_program) return;
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_PROGRAM_POINT_SIZE);
    // Faces step back a little so that their edges and the lines on them stay visible.
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(1.0f, 1.0f);
    m_program->bind();
    Mat4 viewProjection = camera.ViewProjection();
    m_program->setUniformValue("viewProjection", QMatrix4x4(viewProjection.m.data()).transposed());
    Vec3 eye = camera.Eye();
    m_program->setUniformValue("eye", eye.x, eye.y, eye.z);
    m_program->setUniformValue(m_overrideLocation, 0.0f, 0.0f, 0.0f, 0.0f);
    m_program->setUniformValue(m_shadedLocation, false);

    const auto& instances = cache.Instances();
    const auto solid = [&xRay](HC_KEY item) { return !xRay.contains(item); };
    // Without x-ray a batch is one draw call per kind; with it, the runs of the items drawn.
    auto drawAll = [&](int firstKind, int lastKind) {
        for (int id = 0; id < static_cast<int>(m_batches.size()); ++id) {
            if (id >= static_cast<int>(instances.size()) || !instances[id].alive) continue;
            for (int kind = firstKind; kind <= lastKind; ++kind) {
                if (xRay.empty())
                    Draw(m_batches[id], kind, 0, m_batches[id].vertices[kind]);
                else
                    DrawRuns(cache, id, kind, solid);
            }
        }
    };
    drawAll(0, kTranslucent - 1);
    // Translucent faces over what they let show through, unsorted: they keep the depth they
    // find and write none, so each shows whatever else lies behind it.
    glEnable(GL_BLEND);
    // The frame's own alpha stays opaque: the widget is composed with the window by it.
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ZERO, GL_ONE);
    glDepthMask(GL_FALSE);
    drawAll(kTranslucent, kTranslucent);
    if (!xRay.empty()) {
        // One grey, faint enough to see the solid parts through several walls; as every x-rayed
        // face has the same colour and writes no depth, the order they blend in cannot show.
        m_program->setUniformValue(m_overrideLocation, 0.55f, 0.6f, 0.68f, 0.12f);
        const auto seeThrough = [&xRay](HC_KEY item) { return xRay.contains(item); };
        for (int id = 0; id < static_cast<int>(m_batches.size()); ++id)
            if (id < static_cast<int>(instances.size()) && instances[id].alive)
                for (int kind : {0, kTranslucent})
                    DrawRuns(cache, id, kind, seeThrough);
        m_program->setUniformValue(m_overrideLocation, 0.0f, 0.0f, 0.0f, 0.0f);
    }
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);

    if (!highlighted.empty()) DrawHighlight(cache, highlighted, {0.0f, 0.75f, 0.85f});
    if (selection && selection->GetSize() > 0) {
        std::unordered_set<HC_KEY> selected;
        for (int i = 0; i < selection->GetSize(); ++i)
            selected.insert(selection->GetSelectionItemAt(i));
        DrawHighlight(cache, selected, {1.0f, 0.55f, 0.0f});
    }
    if (!overlay.Empty()) DrawOverlay(overlay);
    glBindVertexArray(0);
    m_program->release();
}

void GlRenderer::DrawHighlight(const SceneCache& cache, const std::unordered_set<HC_KEY>& selected,
                               const float (&colour)[3]) {
    m_program->setUniformValue(m_overrideLocation, colour[0], colour[1], colour[2], 1.0f);
    const auto& instances = cache.Instances();
    // Whether an instance lies in a selected segment: asked once per instance, up its owners.
    std::vector<signed char> inSelected(instances.size(), -1);
    auto isInSelected = [&](int id) {
        std::vector<int> chain;
        int at = id;
        while (at >= 0 && inSelected[at] < 0) {
            chain.push_back(at);
            at = instances[at].parent;
        }
        bool result = at >= 0 && inSelected[at] > 0;
        for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
            result = result || selected.contains(instances[*it].segment);
            inSelected[*it] = result ? 1 : 0;
        }
        return result;
    };
    for (int id = 0; id < static_cast<int>(m_batches.size()); ++id) {
        if (id >= static_cast<int>(instances.size()) || !instances[id].alive) continue;
        bool whole = isInSelected(id);
        for (int kind = 0; kind < kKinds; ++kind) {
            if (whole) {
                Draw(m_batches[id], kind, 0, m_batches[id].vertices[kind]);
                continue;
            }
            DrawRuns(cache, id, kind, [&selected](HC_KEY item) { return selected.contains(item); });
        }
    }
    m_program->setUniformValue(m_overrideLocation, 0.0f, 0.0f, 0.0f, 0.0f);
}

void GlRenderer::DrawOverlay(const Box& box) {
    auto same = [](Vec3 a, Vec3 b) { return a.x == b.x && a.y == b.y && a.z == b.z; };
    if (!m_overlay.vao[1] || !same(box.min, m_overlayBox.min) || !same(box.max, m_overlayBox.max)) {
        std::vector<Vertex> edges;
        Rgba colour = MakeRgba(1.0f, 0.1f, 0.6f);
        for (int a = 0; a < 8; ++a)
            for (int bit = 1; bit < 8; bit <<= 1)
                if (!(a & bit)) {
                    Vec3 p = box.Corner(a), q = box.Corner(a | bit);
                    edges.push_back({p.x, p.y, p.z, colour});
                    edges.push_back({q.x, q.y, q.z, colour});
                }
        if (!m_overlay.vao[1]) CreateArray(m_overlay.vao[1], m_overlay.vbo[1]);
        glBindBuffer(GL_ARRAY_BUFFER, m_overlay.vbo[1]);
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(edges.size() * sizeof(Vertex)),
                     edges.data(), GL_DYNAMIC_DRAW);
        m_overlay.vertices[1] = static_cast<int>(edges.size());
        m_overlayBox = box;
        ++m_stats.uploads;
    }
    // The box shows through what lies in front of it.
    glDisable(GL_DEPTH_TEST);
    Draw(m_overlay, 1, 0, m_overlay.vertices[1]);
    glEnable(GL_DEPTH_TEST);
}

} // namespace obsidra::host::view
