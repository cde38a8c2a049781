#pragma once

#include <QDialog>
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>

#include <obsidra/hc.h>
#include <obsidra/hc_journal.h>

#include "scenetree/notifier.h"
#include "scenetree/segment_commands.h"
#include "treegraph/qt/seg_tree_ctrl.h"
#include "treegraph/qt/windows_tree_graph.h"

class HBaseView;
class HoopsSegmentTree;
class QMenu;

// The segment browser: a modeless dialog that shows the scene of the host's view as a tree,
// the selected node's information lines, and the search and locate rows. It is itself the tree
// graph the segment tree fills. Every control carries its numeric id in the property
// "controlId"; closing only hides the dialog.
class CSegmentBrowserDlg : public QDialog, public WindowsTreeGraph {
    Q_OBJECT

public:
    // Shows one text to the user and returns when the user has read it.
    using MessageBox = std::function<void(const QString& text)>;
    // Runs a modal dialog of a command and returns its result.
    using DialogRunner = std::function<int(QDialog& dialog)>;
    // Asks for a file to read (save false) or to write; empty when cancelled.
    using FileChooser =
        std::function<QString(const obsidra::scenetree::FileRequest& request, bool save)>;

    // The name filter box above the tree (ours, beyond the template).
    static constexpr int kNameFilterId = 2201;
    // "Undo <step>" and "Redo <step>" beside it (also Ctrl+Z and Ctrl+Shift+Z).
    static constexpr int kUndoId = 2202;
    static constexpr int kRedoId = 2203;

    CSegmentBrowserDlg(QWidget* parent, HBaseView* view);
    ~CSegmentBrowserDlg() override;

    // The control of that id, or null.
    QWidget* Control(int controlId) const;
    CSegTreeCtrl* Tree() const { return GetTreeControl(); }
    HoopsSegmentTree* GetTreeModel() const { return m_model.get(); }
    HBaseView* GetView() const { return m_view; }
    HC_KEY GetRootKey() const { return m_rootKey; }
    bool IsReady() const { return m_ready; }
    int GetSearchTypeCode() const { return m_searchTypeCode; }
    const QString& GetLocateResult() const { return m_locateResult; }
    // Tests replace the message box, the modal run of the commands' dialogs and the file
    // dialogs, so that nothing waits for a click.
    void SetMessageBox(MessageBox messageBox) { m_messageBox = std::move(messageBox); }
    void SetDialogRunner(DialogRunner runner) { m_dialogRunner = std::move(runner); }
    void SetFileChooser(FileChooser chooser) { m_fileChooser = std::move(chooser); }
    void ShowMessage(const QString& text);
    int RunDialog(QDialog& dialog);
    QString ChooseFile(const obsidra::scenetree::FileRequest& request, bool save);

    int StateImageFor(const TreeGraphItem& item) const override;

    // What the controls do, also reachable without a click.
    void Rebuild();
    void ShowBoundings();
    void Search();
    void LocateShell();
    // Filters the tree by the text of the name filter box, to the end, now; an empty box shows
    // it whole again. Typing in the box filters in slices between events instead.
    void ApplyNameFilter();
    bool IsNameFilterRunning() const;
    // Takes back the latest step of scene edits, or makes it again; the tree and the view follow.
    void Undo();
    void Redo();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    class Notifier : public SegmentTreeNotifier {
    public:
        explicit Notifier(CSegmentBrowserDlg* dialog) : m_dialog(dialog) {}
        void ShowMessage(const char* text) override;

    private:
        CSegmentBrowserDlg* m_dialog;
    };

    void CreateControls();
    void OnSearchTypeChanged();
    std::unique_ptr<QMenu> ContextMenuFor(const CSegTreeCtrl::ContextRequest& request);
    void OnCommand(int commandId, TreeGraphItem* node);
    void SelectFirstHit();
    void AfterUndoOrRedo();
    void HighlightInView(TreeGraphItem* node);
    void UpdateUndoButtons();
    void StartNameFilter();
    void ContinueNameFilter();
    // The segments from the top node down to the current row, and the row they lead to made
    // current and brought into sight (when the tree still has it).
    std::vector<HC_KEY> CurrentSegmentChain() const;
    void MakeCurrent(const std::vector<HC_KEY>& chain);
    static void OnSceneChanged(const HC_CHANGE* changes, int count, void* self);
    static void OnViewSelectionChanged(HBaseView* view, void* self);

    HBaseView* m_view;
    HC_KEY m_rootKey = -1;
    Notifier m_notifier{this};
    std::unique_ptr<HoopsSegmentTree> m_model;
    MessageBox m_messageBox;
    DialogRunner m_dialogRunner;
    FileChooser m_fileChooser;
    QString m_locateResult;
    int m_searchTypeCode = 1;
    bool m_ready = false;
    QTimer m_filterTimer;
    QTimer m_undoButtonsTimer;
    int m_treeBelowFilter = 0; // how much lower than the template the tree starts, in pixels
};
