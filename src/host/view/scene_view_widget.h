// The viewer's 3D view: an OpenGL 3.3 core widget that draws the scene of its ViewerView.
#pragma once

#include <QImage>
#include <QOpenGLWidget>
#include <QPoint>
#include <memory>
#include <unordered_set>
#include <vector>

#include <obsidra/hc.h>
#include <obsidra/hc_journal.h>

#include "host/view/camera.h"
#include "host/view/gl_renderer.h"
#include "host/view/scene_cache.h"
#include "mvo/geom_handle.h"

class HBaseModel;

namespace obsidra::host::view {

class ViewerView;

class SceneViewWidget : public QOpenGLWidget {
    Q_OBJECT

public:
    explicit SceneViewWidget(HBaseModel* model, QWidget* parent = nullptr);
    ~SceneViewWidget() override;

    // The HBaseView the module's segment browser inspects.
    ViewerView* View() const { return m_view.get(); }
    // Sets the camera so that the whole scene fills the view.
    void FitAll();
    // Draws once into an image of the widget's size (works without a screen under xvfb).
    QImage Snapshot();

    // Sets the camera so that an item, reached through an include path (bottom-up, as the
    // selection set holds it), fills the view; nothing happens for an item with no bounds.
    void FitItem(HC_KEY key, int count, const HC_KEY* path);
    // Shows the box of an item reached through an include path on top of the scene, or hides it.
    void ShowBounding(bool show, HC_KEY key, int count, const HC_KEY* path);
    // Selects the nearest item under a point of the widget, as a click does.
    void PickAt(const QPoint& point);
    // Draws a geometry item see-through (x-ray) or as it is: a mode of the view, not of the
    // scene. The component viewer's "X-ray" asks it through the building's host.
    void SetXRay(HC_KEY item, bool xRay);
    void ClearXRay();
    // Marks items (geometry, or segments with everything below them) picked in a dialog's
    // tree, drawn in a colour of their own apart from the selection.
    void SetHighlighted(HC_KEY key, bool highlighted);
    void ClearHighlighted();

    Camera& GetCamera() { return m_camera; }
    const SceneCache& GetSceneCache() const { return m_cache; }
    // Draw calls and buffer uploads of the last frame drawn.
    const FrameStats& LastFrameStats() const { return m_renderer.LastFrame(); }
    // Whether OpenGL 3.3 core came up; when it did not, the view stays empty.
    bool HasRenderer() const { return m_renderer.IsInitialized(); }

signals:
    // A click selected an item: its key and its include path, bottom-up as the selection set
    // holds it. key is -1 when the click hit nothing and the selection was cleared.
    void Picked(HC_KEY key, const std::vector<HC_KEY>& includePath);

protected:
    void initializeGL() override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    static void OnChanges(const HC_CHANGE* changes, int count, void* user);
    void ReleaseGl();
    // Where the pointer at a pixel meets the drag plane; false when it runs along it.
    bool OnDragPlane(QPoint at, Vec3& point) const;

    std::unique_ptr<ViewerView> m_view;
    SceneCache m_cache;
    Camera m_camera;
    GlRenderer m_renderer;
    Box m_overlay;
    std::unordered_set<HC_KEY> m_xRay;
    std::unordered_set<HC_KEY> m_highlighted;
    bool m_fitPending = true;
    QPoint m_pressAt;
    QPoint m_lastAt;
    bool m_dragged = false;
    // A manipulator handle being dragged: the plane facing the camera through the point it was
    // grabbed at, and where the pointer last met it.
    HManipulatorHandle m_handle;
    Vec3 m_planePoint;
    Vec3 m_planeNormal;
    Vec3 m_lastOnPlane;
};

} // namespace obsidra::host::view
