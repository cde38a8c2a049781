// obsidra-viewer's window: the 3D view of one open file, the File menu that replaces it, and
// the Tools menu that opens the module's dialogs over it.
#pragma once

#include <QMainWindow>
#include <memory>

#include <obsidra/exports.h>

#include "host/ifc/ifc_component_host.h"
#include "host/viewer/dialog_module.h"
#include "mvo/base_model.h"

class QLabel;
class QMenu;
class QProgressBar;
class QPushButton;

namespace obsidra::host::view {
class SceneViewWidget;
}

namespace obsidra::host::viewer {

class PendingScene;
class SceneLoader;

class MainWindow final : public QMainWindow, private SegmentViewerHost, private SegmentViewerView {
    Q_OBJECT

public:
    // Not interactive: problems go to stderr instead of message boxes, and no file is
    // remembered among the recent ones (for --screenshot and --dump-tree).
    explicit MainWindow(bool interactive = true, QWidget* parent = nullptr);
    ~MainWindow() override;

    // Starts reading the file on a worker thread; the open scene is replaced once the file has
    // been read, and stays when it cannot be. Ignored while another file is loading. A building
    // shows storey by storey as it is meshed, the open scene hidden meanwhile.
    void OpenFile(const QString& path);
    bool IsLoading() const { return m_loader != nullptr; }
    void CancelLoading();

    view::SceneViewWidget* View() const { return m_view; }
    // The segment that holds the open file's scene, below the model; 0 before the first.
    HC_KEY SceneSegment() const { return m_sceneSegment; }
    // The scratch segment that shows a building while it loads, below the model; 0 when none.
    HC_KEY PreviewSegment() const { return m_previewSegment; }
    // The open building's component host; null when the open file is not an IFC building.
    ifc::IfcComponentHost* Building() const { return m_building.get(); }
    const DialogModule& Module() const { return m_module; }

signals:
    // A load ended: opened, or not (message says why, or that it was cancelled).
    void LoadFinished(bool opened, const QString& message);
    // More of the loading file shows in the preview segment.
    void PreviewShown();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    SegmentViewerView* GetView() override { return this; }
    HBaseView* GetHBaseView() override;

    void BuildMenus();
    void OnLoadFinished();
    void ShowPreview();
    void EndPreview();
    bool ReplaceScene(PendingScene& pending, const QString& path, std::string& error);
    enum class Outcome { Opened, Cancelled, Failed };
    void Report(Outcome outcome, const QString& message, const std::vector<std::string>& warnings);
    void RememberRecent(const QString& path);
    void FillRecentMenu();
    void UpdateTools();
    void OnPicked(HC_KEY key);

    const bool m_interactive;
    HBaseModel m_model;
    view::SceneViewWidget* m_view = nullptr;
    DialogModule m_module;
    QString m_moduleError;
    std::unique_ptr<ifc::IfcComponentHost> m_building;
    HC_KEY m_sceneSegment = 0;
    HC_KEY m_previewSegment = 0;
    std::string m_hiddenSceneVisibility; // the open scene's own, while a preview hides it
    SceneLoader* m_loader = nullptr;

    QMenu* m_recentMenu = nullptr;
    QAction* m_segmentBrowser = nullptr;
    QAction* m_componentViewer = nullptr;
    QAction* m_statistics = nullptr;
    QLabel* m_status = nullptr;
    QProgressBar* m_progress = nullptr;
    QPushButton* m_cancel = nullptr;
};

} // namespace obsidra::host::viewer
