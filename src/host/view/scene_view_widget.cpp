#include "host/view/scene_view_widget.h"

#include <QOpenGLFunctions>

#include "host/view/viewer_view.h"

namespace obsidra::host::view {

SceneViewWidget::SceneViewWidget(HBaseModel* model, QWidget* parent)
    : QOpenGLWidget(parent), m_view(std::make_unique<ViewerView>(model, this)) {}

SceneViewWidget::~SceneViewWidget() = default;

void SceneViewWidget::FitAll() {
    update();
}

QImage SceneViewWidget::Snapshot() {
    return grabFramebuffer();
}

void SceneViewWidget::initializeGL() {}

void SceneViewWidget::paintGL() {
    auto* gl = context()->functions();
    gl->glClearColor(1.0f, 1.0f, 1.0f, 1.0f);
    gl->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

} // namespace obsidra::host::view
