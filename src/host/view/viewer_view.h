// The viewer's HBaseView: what the module asks of the view (draw again, fit an item, show a
// bounding box) is done by the OpenGL widget that owns it.
#pragma once

#include "mvo/base_view.h"

namespace obsidra::host::view {

class SceneViewWidget;

class ViewerView final : public HBaseView {
public:
    ViewerView(HBaseModel* model, SceneViewWidget* widget);

    void Update() override;
    void FitItemByPath(HC_KEY key, int count, const HC_KEY* path) override;
    void VisualizeBounding(bool show, HC_KEY key, int count, const HC_KEY* path) override;
    void HighlightItem(HC_KEY key, int count, const HC_KEY* path) override;

private:
    SceneViewWidget* m_widget;
};

} // namespace obsidra::host::view
