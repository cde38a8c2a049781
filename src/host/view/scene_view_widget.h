// The viewer's 3D view: an OpenGL 3.3 core widget that draws the scene of its ViewerView.
#pragma once

#include <QImage>
#include <QOpenGLWidget>
#include <memory>
#include <vector>

#include <obsidra/hc.h>

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

signals:
    // A click selected an item: its key and its include path, bottom-up as the selection set
    // holds it. key is -1 when the click hit nothing and the selection was cleared.
    void Picked(HC_KEY key, const std::vector<HC_KEY>& includePath);

protected:
    void initializeGL() override;
    void paintGL() override;

private:
    std::unique_ptr<ViewerView> m_view;
};

} // namespace obsidra::host::view
