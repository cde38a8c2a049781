// The five exported functions and the module's two dialog singletons.
#include <QPointer>

#include <obsidra/exports.h>

#include "browser/segment_browser_dlg.h"
#include "components/qt/orn_viewer.h"
#include "components/qt/tong_ji_dialog.h"
#include "entry/module_state_guard.h"

using obsidra::components::qt::CUxTongJiDialog;
using obsidra::components::qt::OrnViewer;

namespace {

// The one segment browser; replaced by every ShowSegmentViewerDialog. Both dialogs are
// owner-less windows, so nothing but the module deletes the browser; the viewer deletes itself
// when closed, and QPointer then reads empty.
QPointer<CSegmentBrowserDlg> g_segmentBrowser;
QPointer<OrnViewer> g_ornViewer;

void DeleteSegmentBrowser() {
    delete g_segmentBrowser.data();
}

} // namespace

using obsidra::entry::CanShowDialogs;
using obsidra::entry::ModuleStateGuard;

extern "C" {

void ShowSegmentViewerDialog(void*, obsidra::SegmentViewerHost* host) {
    if (!CanShowDialogs("ShowSegmentViewerDialog")) return;
    ModuleStateGuard guard;
    // A second call always yields a fresh browser with a freshly built tree.
    DeleteSegmentBrowser();
    if (!host || !host->GetView()) return;
    HBaseView* view = host->GetView()->GetHBaseView();
    if (!view) return;
    g_segmentBrowser = new CSegmentBrowserDlg(nullptr, view);
    g_segmentBrowser->show();
}

void ShowOrnViewerDialog(void*, obsidra::ComponentHost* host) {
    if (!CanShowDialogs("ShowOrnViewerDialog")) return;
    ModuleStateGuard guard;
    if (g_ornViewer) {
        g_ornViewer->show();
        return;
    }
    if (!host) return;
    g_ornViewer = new OrnViewer(host);
    g_ornViewer->show();
    g_ornViewer->RefreshControlTree();
}

void OrnViewerSelect(const std::uint64_t& componentHandle) {
    if (!CanShowDialogs("OrnViewerSelect")) return;
    ModuleStateGuard guard;
    if (g_ornViewer) g_ornViewer->Select(componentHandle);
}

void ShowOrnTongJiDialog(void*, obsidra::ComponentHost* host) {
    if (!CanShowDialogs("ShowOrnTongJiDialog")) return;
    ModuleStateGuard guard;
    if (!host) return;
    CUxTongJiDialog dialog(host);
    dialog.exec();
}

void ClearAllDialog() {
    if (!CanShowDialogs("ClearAllDialog")) return;
    DeleteSegmentBrowser();
    delete g_ornViewer.data();
}

} // extern "C"
