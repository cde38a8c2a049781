#include "mvo/base_view.h"

#include <algorithm>

HBaseView::HBaseView(HBaseModel* model) : m_model(model) {
    HC_Open_Segment("/views");
    m_viewKey = HC_Open_Segment("");
    m_sceneKey = HC_Open_Segment("scene");
    m_includeLinkKey = HC_Include_Segment_By_Key(model->GetModelKey());
    HC_Close_Segment();
    HC_Close_Segment();
    HC_Close_Segment();
}

HBaseView::~HBaseView() {
    if (HC_Show_Existence_By_Key(m_viewKey, "self")) HC_Delete_By_Key(m_viewKey);
}

void HBaseView::Update() {
    ++m_updates;
}

void HBaseView::FitItemByPath(HC_KEY key, int /*count*/, const HC_KEY* /*path*/) {
    m_fittedKey = key;
}

void HBaseView::VisualizeBounding(bool show, HC_KEY key, int count, const HC_KEY* path) {
    m_boundingKey = show ? key : -1;
    m_boundingPath.assign(path && count > 0 ? path : nullptr,
                          path && count > 0 ? path + count : nullptr);
}

void HBaseView::HighlightItem(HC_KEY key, int /*count*/, const HC_KEY* /*path*/) {
    m_highlightKey = key;
}

void HBaseView::AddSelectionListener(SelectionListener listener, void* user) {
    if (!listener) return;
    const std::pair<SelectionListener, void*> entry{listener, user};
    if (std::find(m_selectionListeners.begin(), m_selectionListeners.end(), entry) ==
        m_selectionListeners.end())
        m_selectionListeners.push_back(entry);
}

void HBaseView::RemoveSelectionListener(SelectionListener listener, void* user) {
    std::erase(m_selectionListeners, std::pair<SelectionListener, void*>{listener, user});
}

// A copy: a listener may remove itself while it hears.
void HBaseView::NotifySelectionChanged() {
    const auto listeners = m_selectionListeners;
    for (const auto& [listener, user] : listeners)
        listener(this, user);
}
