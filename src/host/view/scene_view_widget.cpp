#include "host/view/scene_view_widget.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QResizeEvent>
#include <QWheelEvent>
#include <cmath>

#include <obsidra/hc_undo.h>

#include "host/view/item_bounds.h"
#include "host/view/picking.h"
#include "host/view/viewer_view.h"

namespace obsidra::host::view {

namespace {

// A press and release closer than this (in pixels) is a click, not a drag.
constexpr int kClickSlack = 3;

} // namespace

SceneViewWidget::SceneViewWidget(HBaseModel* model, QWidget* parent)
    : QOpenGLWidget(parent), m_view(std::make_unique<ViewerView>(model, this)),
      m_cache(m_view->GetSceneKey()) {
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setDepthBufferSize(24);
    setFormat(format);
    setMinimumSize(64, 64);
    // A change anywhere may be one the scene shows: a repaint is cheap when it is not, since
    // the cache rebuilds only what the journal names.
    HC_Define_Change_Listener(&SceneViewWidget::OnChanges, this);
}

SceneViewWidget::~SceneViewWidget() {
    HC_UnDefine_Change_Listener(&SceneViewWidget::OnChanges, this);
    ReleaseGl();
    // The base class destroys the context after this object is gone: it must not call back.
    if (context()) disconnect(context(), nullptr, this, nullptr);
}

void SceneViewWidget::OnChanges(const HC_CHANGE* /*changes*/, int /*count*/, void* user) {
    static_cast<SceneViewWidget*>(user)->update();
}

void SceneViewWidget::ReleaseGl() {
    if (!m_renderer.IsInitialized() || !context()) return;
    makeCurrent();
    m_renderer.Release();
    doneCurrent();
}

void SceneViewWidget::FitAll() {
    m_camera.SetViewport(width(), height());
    m_cache.Sync();
    m_camera.Fit(m_cache.Bounds());
    m_fitPending = false;
    update();
}

QImage SceneViewWidget::Snapshot() {
    // A hidden widget keeps a resize pending until it is shown, and with it the size of its
    // framebuffer: a script that never shows the view still gets a picture of the size it set.
    if (testAttribute(Qt::WA_PendingResizeEvent)) {
        QResizeEvent resize(size(), size());
        QCoreApplication::sendEvent(this, &resize);
        setAttribute(Qt::WA_PendingResizeEvent, false);
    }
    return grabFramebuffer();
}

void SceneViewWidget::FitItem(HC_KEY key, int count, const HC_KEY* path) {
    Box box = WorldBounds(key, count, path);
    if (box.Empty()) return;
    m_camera.SetViewport(width(), height());
    m_camera.Fit(box);
    m_fitPending = false;
    update();
}

void SceneViewWidget::ShowBounding(bool show, HC_KEY key, int count, const HC_KEY* path) {
    m_overlay = show ? WorldBounds(key, count, path) : Box{};
    update();
}

void SceneViewWidget::PickAt(const QPoint& point) {
    m_camera.SetViewport(width(), height());
    m_cache.Sync();
    PickHit hit =
        Pick(m_cache, m_camera, static_cast<float>(point.x()), static_cast<float>(point.y()));
    HSelectionSet* selection = m_view->GetSelection();
    selection->DeSelectAll();
    std::vector<HC_KEY> path;
    if (hit.item != -1) {
        path = SelectionPath(hit.item, m_cache.Instances()[hit.instance].links,
                             m_view->GetIncludeLinkKey(), m_view->GetModelKey());
        selection->Select(hit.item, static_cast<int>(path.size()), path.data());
    }
    update();
    m_view->NotifySelectionChanged();
    emit Picked(hit.item, path);
}

void SceneViewWidget::SetXRay(HC_KEY item, bool xRay) {
    if (xRay ? m_xRay.insert(item).second : m_xRay.erase(item) != 0) update();
}

void SceneViewWidget::SetHighlighted(HC_KEY key, bool highlighted) {
    if (highlighted ? m_highlighted.insert(key).second : m_highlighted.erase(key) != 0) update();
}

void SceneViewWidget::ClearHighlighted() {
    if (!m_highlighted.empty()) update();
    m_highlighted.clear();
}

void SceneViewWidget::ClearXRay() {
    if (!m_xRay.empty()) update();
    m_xRay.clear();
}

void SceneViewWidget::initializeGL() {
    if (!m_renderer.Initialize())
        qWarning("The 3D view needs OpenGL 3.3 core; the scene is not drawn.");
    // A widget moved to another window gets a new context: the buffers go with the old one.
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &SceneViewWidget::ReleaseGl,
            Qt::UniqueConnection);
}

void SceneViewWidget::paintGL() {
    m_camera.SetViewport(width(), height());
    m_cache.Sync();
    if (m_fitPending) {
        m_camera.Fit(m_cache.Bounds());
        m_fitPending = m_cache.Bounds().Empty();
    }
    m_renderer.Render(m_cache, m_camera, m_view->GetSelection(), m_overlay, m_xRay, m_highlighted);
}

// A press on a manipulator handle grabs it: the drag that follows moves, turns or stretches
// its segment instead of turning the camera, as one step of undo.
void SceneViewWidget::mousePressEvent(QMouseEvent* event) {
    m_pressAt = m_lastAt = event->position().toPoint();
    m_dragged = false;
    if (event->button() != Qt::LeftButton || (event->modifiers() & Qt::ShiftModifier)) return;
    m_camera.SetViewport(width(), height());
    m_cache.Sync();
    const auto x = static_cast<float>(m_pressAt.x());
    const auto y = static_cast<float>(m_pressAt.y());
    const PickHit hit = Pick(m_cache, m_camera, x, y);
    if (hit.item == -1) return;
    m_handle = HUtilityGeomHandle::HandleOf(hit.item);
    if (!m_handle) return;
    const Ray ray = m_camera.RayAt(x, y);
    m_planePoint = m_lastOnPlane = ray.origin + ray.direction * hit.distance;
    m_planeNormal = Normalized(m_camera.Eye() - m_camera.Target());
    HC_Begin_Undo_Step("Manipulate");
}

bool SceneViewWidget::OnDragPlane(QPoint at, Vec3& point) const {
    const Ray ray = m_camera.RayAt(static_cast<float>(at.x()), static_cast<float>(at.y()));
    const float facing = Dot(ray.direction, m_planeNormal);
    if (std::abs(facing) < 1e-6f) return false;
    point = ray.origin + ray.direction * (Dot(m_planePoint - ray.origin, m_planeNormal) / facing);
    return true;
}

void SceneViewWidget::mouseMoveEvent(QMouseEvent* event) {
    QPoint at = event->position().toPoint();
    if ((at - m_pressAt).manhattanLength() > kClickSlack) m_dragged = true;
    if (m_handle) {
        m_lastAt = at;
        Vec3 onPlane;
        if (!m_dragged || !OnDragPlane(at, onPlane)) return;
        const HPoint from{m_lastOnPlane.x, m_lastOnPlane.y, m_lastOnPlane.z};
        const HPoint to{onPlane.x, onPlane.y, onPlane.z};
        if (HUtilityGeomHandle::ApplyDrag(m_handle, from, to)) m_lastOnPlane = onPlane;
        update();
        return;
    }
    QPoint delta = at - m_lastAt;
    m_lastAt = at;
    if (!m_dragged) return;
    Qt::MouseButtons buttons = event->buttons();
    bool pan = (buttons & Qt::MiddleButton) ||
               ((buttons & Qt::LeftButton) && (event->modifiers() & Qt::ShiftModifier));
    if (pan)
        m_camera.Pan(static_cast<float>(delta.x()), static_cast<float>(delta.y()));
    else if (buttons & Qt::LeftButton)
        m_camera.Orbit(static_cast<float>(delta.x()), static_cast<float>(delta.y()));
    else
        return;
    update();
}

void SceneViewWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    if (m_handle) {
        m_handle = {};
        HC_End_Undo_Step();
        if (m_dragged) {
            m_view->Update();
            return;
        }
    }
    if (!m_dragged) PickAt(event->position().toPoint());
}

void SceneViewWidget::wheelEvent(QWheelEvent* event) {
    m_camera.Zoom(static_cast<float>(event->angleDelta().y()) / 120.0f);
    update();
}

} // namespace obsidra::host::view
