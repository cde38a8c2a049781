#pragma once

#include <utility>
#include <vector>

#include <obsidra/hc.h>

#include "mvo/base_model.h"
#include "mvo/selection_set.h"

// A view of a model: a view segment below "/views", a scene segment in it, and an include of
// the model's segment in the scene. Headless: what a renderer does (draw again, fit the camera,
// show a bounding box) is a virtual operation that a renderer overrides; here they record what
// was asked, for scripts and tests.
class HBaseView {
public:
    explicit HBaseView(HBaseModel* model);
    virtual ~HBaseView();
    HBaseView(const HBaseView&) = delete;
    HBaseView& operator=(const HBaseView&) = delete;

    HBaseModel* GetModel() const { return m_model; }
    HC_KEY GetModelKey() const { return m_model->GetModelKey(); }
    HC_KEY GetViewKey() const { return m_viewKey; }
    HC_KEY GetSceneKey() const { return m_sceneKey; }
    // The include that brings the model into the scene.
    HC_KEY GetIncludeLinkKey() const { return m_includeLinkKey; }
    HSelectionSet* GetSelection() { return &m_selection; }

    // Draws the view again.
    virtual void Update();
    // Sets the camera so that the item (reached through the include path) fills the view.
    virtual void FitItemByPath(HC_KEY key, int count, const HC_KEY* path);
    // Shows or hides the bounding box of an item (reached through the include path).
    virtual void VisualizeBounding(bool show, HC_KEY key, int count, const HC_KEY* path);
    // Marks the item the user picked in the segment browser's tree (reached through the include
    // path; a segment with everything below it), apart from the selection; -1 takes the mark
    // away. A view without it only records the key.
    virtual void HighlightItem(HC_KEY key, int count, const HC_KEY* path);

    // Who hears that the user changed the selection in the view (a pick): the segment browser
    // reveals the picked item. The view that changes the selection calls
    // NotifySelectionChanged; adding a listener twice adds it once.
    using SelectionListener = void (*)(HBaseView* view, void* user);
    void AddSelectionListener(SelectionListener listener, void* user);
    void RemoveSelectionListener(SelectionListener listener, void* user);
    void NotifySelectionChanged();

    // What the headless view was asked last.
    int GetUpdateCount() const { return m_updates; }
    HC_KEY GetFittedKey() const { return m_fittedKey; }
    HC_KEY GetVisualizedBoundingKey() const { return m_boundingKey; }
    HC_KEY GetHighlightedKey() const { return m_highlightKey; }
    const std::vector<HC_KEY>& GetVisualizedBoundingPath() const { return m_boundingPath; }

private:
    HBaseModel* m_model;
    HC_KEY m_viewKey;
    HC_KEY m_sceneKey;
    HC_KEY m_includeLinkKey;
    HSelectionSet m_selection;
    std::vector<std::pair<SelectionListener, void*>> m_selectionListeners;
    int m_updates = 0;
    HC_KEY m_fittedKey = -1;
    HC_KEY m_boundingKey = -1;
    HC_KEY m_highlightKey = -1;
    std::vector<HC_KEY> m_boundingPath;
};
