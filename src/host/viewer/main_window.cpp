#include "host/viewer/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QStatusBar>
#include <iostream>

#include "host/mesh/mesh_writer.h"
#include "host/view/scene_view_widget.h"
#include "host/view/viewer_view.h"
#include "host/viewer/scene_loader.h"

namespace obsidra::host::viewer {

namespace {

constexpr const char* kRecentFilesKey = "recentFiles";
constexpr int kRecentFiles = 8;

QString FileFilter() {
    QStringList patterns;
    for (const std::string& extension : SceneFileExtensions())
        patterns << "*." + QString::fromStdString(extension);
    return "Scene files (" + patterns.join(' ') + ");;All files (*)";
}

QString LocalFileOf(const QMimeData* data) {
    if (!data->hasUrls() || data->urls().isEmpty()) return {};
    return data->urls().front().toLocalFile();
}

} // namespace

MainWindow::MainWindow(bool interactive, QWidget* parent)
    : QMainWindow(parent), m_interactive(interactive) {
    m_view = new view::SceneViewWidget(&m_model, this);
    setCentralWidget(m_view);
    connect(m_view, &view::SceneViewWidget::Picked, this,
            [this](HC_KEY key, const std::vector<HC_KEY>&) { OnPicked(key); });
    setAcceptDrops(true);
    setWindowTitle("obsidra-viewer");
    resize(1024, 768);

    m_status = new QLabel(this);
    m_progress = new QProgressBar(this);
    m_progress->setRange(0, 100);
    m_progress->setMaximumWidth(240);
    m_cancel = new QPushButton("Cancel", this);
    connect(m_cancel, &QPushButton::clicked, this, &MainWindow::CancelLoading);
    statusBar()->addWidget(m_status, 1);
    statusBar()->addPermanentWidget(m_progress);
    statusBar()->addPermanentWidget(m_cancel);
    m_progress->hide();
    m_cancel->hide();

    m_module.Load(m_moduleError);
    BuildMenus();
    UpdateTools();
}

MainWindow::~MainWindow() {
    // The dialogs hold the view and the building; the view's HBaseView holds the model, which
    // as a member would otherwise go before the view, a child widget.
    m_module.ClearAll();
    m_building.reset();
    delete m_view;
}

HBaseView* MainWindow::GetHBaseView() {
    return m_view->View();
}

void MainWindow::BuildMenus() {
    QMenu* file = menuBar()->addMenu("&File");
    QAction* open = file->addAction("&Open...", this, [this] {
        const QString path = QFileDialog::getOpenFileName(this, "Open", {}, FileFilter());
        if (!path.isEmpty()) OpenFile(path);
    });
    open->setShortcut(QKeySequence::Open);
    m_recentMenu = file->addMenu("Open &Recent");
    FillRecentMenu();
    file->addSeparator();
    file->addAction("E&xit", this, &QWidget::close)->setShortcut(QKeySequence::Quit);

    QMenu* tools = menuBar()->addMenu("&Tools");
    m_segmentBrowser = tools->addAction("Segment Browser", this,
                                        [this] { m_module.ShowSegmentBrowser(this, this); });
    m_componentViewer = tools->addAction("Component Viewer", this, [this] {
        if (m_building) m_module.ShowComponentViewer(this, m_building.get());
    });
    m_statistics = tools->addAction("Statistics", this, [this] {
        if (m_building) m_module.ShowStatistics(m_building.get());
    });
}

void MainWindow::UpdateTools() {
    const bool module = m_module.IsLoaded();
    const QString noModule = "The dialogs are not available: " + m_moduleError;
    const QString noBuilding = "Open an IFC building to see its components";
    m_segmentBrowser->setEnabled(module);
    m_segmentBrowser->setStatusTip(module ? QString() : noModule);
    for (QAction* action : {m_componentViewer, m_statistics}) {
        action->setEnabled(module && m_building);
        action->setStatusTip(!module ? noModule : m_building ? QString() : noBuilding);
    }
}

void MainWindow::OpenFile(const QString& path) {
    if (IsLoading()) {
        m_status->setText("Still loading " + m_loader->Path());
        return;
    }
    m_loader = new SceneLoader(path, this);
    connect(m_loader, &SceneLoader::Progress, m_progress, &QProgressBar::setValue);
    connect(m_loader, &SceneLoader::PreviewReady, this, &MainWindow::ShowPreview);
    connect(m_loader, &SceneLoader::Finished, this, &MainWindow::OnLoadFinished);
    m_status->setText("Loading " + path);
    m_progress->setValue(0);
    m_progress->show();
    m_cancel->show();
    m_loader->Start();
}

void MainWindow::CancelLoading() {
    if (m_loader) m_loader->Cancel();
}

void MainWindow::OnLoadFinished() {
    SceneLoader* loader = std::exchange(m_loader, nullptr);
    loader->deleteLater();
    EndPreview();
    m_progress->hide();
    m_cancel->hide();
    SceneReadResult result = loader->TakeResult();
    std::string error = std::move(result.error);
    // A cancel asked after the read ended but before its scene is written still holds: the user
    // saw a building still loading when they pressed it.
    if (result.cancelled || loader->CancelAsked()) {
        Report(Outcome::Cancelled, "Loading " + loader->Path() + " was cancelled", {});
    } else if (result.scene && ReplaceScene(*result.scene, loader->Path(), error)) {
        RememberRecent(loader->Path());
        Report(Outcome::Opened, "Opened " + loader->Path(), result.scene->Warnings());
    } else {
        Report(Outcome::Failed, QString::fromStdString(error), {});
    }
    UpdateTools();
}

void MainWindow::ShowPreview() {
    if (!m_loader) return; // a late notice of a load that has ended
    std::vector<std::unique_ptr<PreviewPart>> parts = m_loader->TakePreviews();
    if (parts.empty()) return;
    if (!m_previewSegment) {
        HC_Open_Segment_By_Key(m_model.GetModelKey());
        m_previewSegment = HC_Create_Segment("");
        HC_Close_Segment();
        if (m_sceneSegment) {
            HC_Open_Segment_By_Key(m_sceneSegment);
            char visibility[HC_TEXT_MAX] = "";
            if (HC_Show_Existence("visibility") > 0) HC_Show_Visibility(visibility);
            m_hiddenSceneVisibility = visibility;
            HC_Set_Visibility("off");
            HC_Close_Segment();
        }
    }
    for (const std::unique_ptr<PreviewPart>& part : parts)
        part->Write(m_previewSegment);
    // The camera follows the building as it grows.
    m_view->FitAll();
    emit PreviewShown();
}

// The preview goes whatever the load's end: the file's own scene takes its place, or the open
// scene comes back as it was.
void MainWindow::EndPreview() {
    if (!m_previewSegment) return;
    HC_Delete_By_Key(std::exchange(m_previewSegment, 0));
    if (!m_sceneSegment) return;
    HC_Open_Segment_By_Key(m_sceneSegment);
    HC_UnSet_Visibility();
    if (!m_hiddenSceneVisibility.empty()) HC_Set_Visibility(m_hiddenSceneVisibility.c_str());
    HC_Close_Segment();
    m_view->View()->Update();
}

// The new scene is written beside the old one and takes its place only when it is whole, so a
// file the database refuses leaves the open scene, its building and the dialogs as they were.
bool MainWindow::ReplaceScene(PendingScene& pending, const QString& path, std::string& error) {
    HC_Open_Segment_By_Key(m_model.GetModelKey());
    const HC_KEY fresh = HC_Create_Segment("");
    HC_Close_Segment();
    if (!pending.Write(fresh, error)) {
        HC_Delete_By_Key(fresh);
        return false;
    }
    m_module.ClearAll();
    m_building.reset();
    if (m_sceneSegment) HC_Delete_By_Key(m_sceneSegment);
    m_sceneSegment = fresh;
    char pathname[HC_TEXT_MAX];
    HC_Show_Segment(fresh, pathname);
    const std::string name = mesh::SegmentNameOf(QFileInfo(path).fileName().toStdString());
    HC_Rename_Segment(pathname, name.c_str());
    m_view->ClearXRay(); // the old scene's items are gone
    m_view->ClearHighlighted();
    if (std::optional<ifc::IfcBuilding> building = pending.TakeBuilding()) {
        m_building = std::make_unique<ifc::IfcComponentHost>(std::move(*building));
        m_building->SetRedraw([this] { m_view->View()->Update(); });
        m_building->SetXRayHandler(
            [this](HC_KEY shell, bool xRay) { m_view->SetXRay(shell, xRay); });
        m_building->SetHighlightHandler(
            [this](HC_KEY shell, bool on) { m_view->SetHighlighted(shell, on); });
    }
    setWindowTitle(QFileInfo(path).fileName() + " - obsidra-viewer");
    m_view->FitAll();
    return true;
}

void MainWindow::Report(Outcome outcome, const QString& message,
                        const std::vector<std::string>& warnings) {
    const bool opened = outcome == Outcome::Opened;
    QString status = message;
    if (!warnings.empty()) status += QString(" (%1 warnings)").arg(warnings.size());
    m_status->setText(status);
    if (!m_interactive) {
        for (const std::string& warning : warnings)
            std::cerr << "warning: " << warning << "\n";
        if (!opened) std::cerr << message.toStdString() << "\n";
    } else if (outcome == Outcome::Failed || !warnings.empty()) {
        auto* box =
            new QMessageBox(QMessageBox::Warning, "obsidra-viewer", message, QMessageBox::Ok, this);
        if (!warnings.empty()) {
            box->setInformativeText(
                QString("%1 warnings while reading the file.").arg(warnings.size()));
            QStringList lines;
            for (const std::string& warning : warnings)
                lines << QString::fromStdString(warning);
            box->setDetailedText(lines.join('\n'));
        }
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->show();
    }
    emit LoadFinished(opened, message);
}

void MainWindow::RememberRecent(const QString& path) {
    if (!m_interactive) return;
    QSettings settings;
    QStringList recent = settings.value(kRecentFilesKey).toStringList();
    const QString absolute = QFileInfo(path).absoluteFilePath();
    recent.removeAll(absolute);
    recent.prepend(absolute);
    while (recent.size() > kRecentFiles)
        recent.removeLast();
    settings.setValue(kRecentFilesKey, recent);
    FillRecentMenu();
}

void MainWindow::FillRecentMenu() {
    m_recentMenu->clear();
    const QStringList recent = QSettings().value(kRecentFilesKey).toStringList();
    for (const QString& path : recent)
        m_recentMenu->addAction(path, this, [this, path] { OpenFile(path); });
    m_recentMenu->setEnabled(!recent.isEmpty());
}

void MainWindow::OnPicked(HC_KEY key) {
    if (!m_building) return;
    if (key == -1) {
        m_building->ClearSelection();
    } else if (m_building->SelectByKey(key)) {
        m_module.SelectComponent(m_building->Selection().front());
    }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    CancelLoading();
    m_module.ClearAll();
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!LocalFileOf(event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    const QString path = LocalFileOf(event->mimeData());
    if (path.isEmpty()) return;
    event->acceptProposedAction();
    OpenFile(path);
}

} // namespace obsidra::host::viewer
