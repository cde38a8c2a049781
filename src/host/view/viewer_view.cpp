#include "host/view/viewer_view.h"

#include "host/view/scene_view_widget.h"

namespace obsidra::host::view {

ViewerView::ViewerView(HBaseModel* model, SceneViewWidget* widget)
    : HBaseView(model), m_widget(widget) {}

void ViewerView::Update() {
    HBaseView::Update();
    m_widget->update();
}

void ViewerView::FitItemByPath(HC_KEY key, int count, const HC_KEY* path) {
    HBaseView::FitItemByPath(key, count, path);
    m_widget->FitItem(key, count, path);
}

void ViewerView::VisualizeBounding(bool show, HC_KEY key, int count, const HC_KEY* path) {
    HBaseView::VisualizeBounding(show, key, count, path);
    m_widget->ShowBounding(show, key, count, path);
}

void ViewerView::HighlightItem(HC_KEY key, int count, const HC_KEY* path) {
    HBaseView::HighlightItem(key, count, path);
    m_widget->ClearHighlighted();
    if (key != -1) m_widget->SetHighlighted(key, true);
}

} // namespace obsidra::host::view
