#include "browser/segment_browser_dlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <tuple>

#include <obsidra/hc_undo.h>

#include "browser/browser_command_host.h"
#include "browser/browser_menus.h"
#include "browser/dialog_units.h"
#include "browser/my_list_box.h"
#include "browser/shell_locator.h"
#include "browser/state_images.h"
#include "mvo/base_view.h"
#include "scenetree/hoops_segment_tree.h"
#include "scenetree/scene_access.h"
#include "treegraph/qt/windows_tree_graph_item.h"

namespace {

using obsidra::scenetree::IsObjectKey;

enum ControlId : int {
    kRootList = 1058,
    kRefresh = 1231,
    kSearchText = 1320,
    kSearchType = 1554,
    kSearchButton = 1232,
    kShowBoundings = 1555,
    kLocateLabel = 1001,
    kLocateNumber = 1000,
    kLocateButton = 1014,
    kLocateResult = 1002,
    kInformationList = 1566,
    kTree = 1567,
    kOk = 1057,
};

enum class Kind { List, Button, Edit, DropDown, CheckBox, Label, Line, Result, Existing };

// Template 1158, in dialog units. The information list and the tree exist before the template
// is laid out (the dialog's tree graph is built on them); the OK button is placed by the resize
// rules.
struct ControlTemplate {
    int id;
    Kind kind;
    const char* text;
    QRect units;
};

const ControlTemplate kTemplate[] = {
    {kRootList, Kind::List, "", {7, 6, 76, 48}},
    {kRefresh, Kind::Button, "Refresh", {88, 6, 50, 14}},
    {kShowBoundings, Kind::CheckBox, "Show Boundings", {88, 25, 64, 10}},
    {0, Kind::Line, "", {156, 5, 1, 50}},
    {kSearchText, Kind::Edit, "", {162, 6, 86, 13}},
    {kSearchType, Kind::DropDown, "", {251, 6, 66, 13}},
    {kSearchButton, Kind::Button, "Search", {320, 6, 34, 14}},
    {kLocateLabel, Kind::Label, "定位出错几何", {162, 25, 50, 10}},
    {kLocateNumber, Kind::Edit, "", {214, 23, 86, 13}},
    {kLocateButton, Kind::Button, "搜索几何", {303, 23, 51, 14}},
    {kLocateResult, Kind::Result, "", {162, 39, 192, 18}},
    {kInformationList, Kind::Existing, "", {7, 59, 347, 37}},
    // Ours, beyond the template: the name filter above the tree, which gives up its top for it.
    {CSegmentBrowserDlg::kNameFilterId, Kind::Edit, "", {7, 98, 187, 12}},
    {CSegmentBrowserDlg::kUndoId, Kind::Button, "Undo", {197, 97, 78, 14}},
    {CSegmentBrowserDlg::kRedoId, Kind::Button, "Redo", {277, 97, 77, 14}},
    {kTree, Kind::Existing, "Tree1", {7, 112, 347, 324}},
    {kOk, Kind::Button, "OK", {314, 446, 40, 14}},
};

constexpr QSize kTemplateSize(361, 466);
constexpr QSize kMinimumSize(250, 300);

const char* const kRootRows[] = {"Model Segment", "Scene Segment", "View Segment", "Root Segment"};

// The drop-down's items in the template's order, and their codes.
struct SearchType {
    const char* text;
    int code;
};
const SearchType kSearchTypeCodes[] = {
    {"Attribute", 1},
    {"Geometry", 2},
    {"Segment", 3},
    {"Include", 4},
    {"Style", 5},
    {"Segment Reference", 6},
    {"Geometry Reference", 7},
    {"Definition", 8},
    {"Keys", 9},
};

} // namespace

CSegmentBrowserDlg::CSegmentBrowserDlg(QWidget* parent, HBaseView* view)
    : QDialog(parent), WindowsTreeGraph(new CSegTreeCtrl(this), new CMyListBox(this)),
      m_view(view) {
    setWindowTitle(QStringLiteral("Segment Brower"));
    CreateControls();
    Tree()->SetStateImageList(obsidra::browser::MakeStateImages());
    Tree()->SetMenuProvider(
        [this](const CSegTreeCtrl::ContextRequest& request) { return ContextMenuFor(request); });
    Tree()->SetCommandHandler(
        [this](int commandId) { OnCommand(commandId, Tree()->GetCurrentNode()); });
    connect(Tree(), &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
        if (!m_model) return;
        obsidra::browser::BrowserCommandHost host(*this);
        obsidra::scenetree::SegmentCommands(*m_model, host)
            .DoubleClick(WindowsTreeGraphItem::FromHandle(item));
    });

    m_model = std::make_unique<HoopsSegmentTree>(m_view, this, -1, &m_notifier);
    m_rootKey = m_model->GetStartKey();
    m_ready = true;

    auto* roots = static_cast<QListWidget*>(Control(kRootList));
    const QSignalBlocker quiet(roots);
    for (const char* row : kRootRows)
        roots->addItem(QString::fromUtf8(row));
    roots->setCurrentRow(0);
}

CSegmentBrowserDlg::~CSegmentBrowserDlg() {
    HC_UnDefine_Change_Listener(&CSegmentBrowserDlg::OnSceneChanged, this);
    if (m_view) m_view->RemoveSelectionListener(&CSegmentBrowserDlg::OnViewSelectionChanged, this);
    if (m_view && m_view->GetHighlightedKey() != -1) m_view->HighlightItem(-1, 0, nullptr);
}

// A pick in the view: the picked item's node is found in the tree (a key search from the top),
// opened to and made current; every other place the item is shown at is marked as a search
// marks its hits.
void CSegmentBrowserDlg::OnViewSelectionChanged(HBaseView* view, void* self) {
    auto* dialog = static_cast<CSegmentBrowserDlg*>(self);
    HSelectionSet* selection = view->GetSelection();
    if (!dialog->m_model || !dialog->isVisible()) return;
    dialog->m_model->RefreshSelectionStates();
    if (selection->GetSize() == 0) return;
    dialog->m_model->SearchKey(selection->GetSelectionItemAt(selection->GetSize() - 1));
    dialog->SelectFirstHit();
}

void CSegmentBrowserDlg::OnSceneChanged(const HC_CHANGE*, int, void* self) {
    auto* dialog = static_cast<CSegmentBrowserDlg*>(self);
    if (!dialog->m_undoButtonsTimer.isActive()) dialog->m_undoButtonsTimer.start();
}

void CSegmentBrowserDlg::CreateControls() {
    const QSize base = obsidra::browser::UseTemplateFont(*this);

    for (const ControlTemplate& control : kTemplate) {
        const QString text = QString::fromUtf8(control.text);
        QWidget* widget = nullptr;
        switch (control.kind) {
        case Kind::List:
            widget = new QListWidget(this);
            break;
        case Kind::Button: {
            auto* button = new QPushButton(text, this);
            button->setAutoDefault(false);
            widget = button;
            break;
        }
        case Kind::Edit:
            widget = new QLineEdit(this);
            break;
        case Kind::DropDown: {
            auto* types = new QComboBox(this);
            for (const SearchType& type : kSearchTypeCodes)
                types->addItem(QString::fromUtf8(type.text));
            widget = types;
            break;
        }
        case Kind::CheckBox:
            widget = new QCheckBox(text, this);
            break;
        case Kind::Label:
            widget = new QLabel(text, this);
            break;
        case Kind::Line: {
            auto* line = new QFrame(this);
            line->setFrameShape(QFrame::VLine);
            line->setFrameShadow(QFrame::Sunken);
            widget = line;
            break;
        }
        case Kind::Result: {
            auto* result = new QPlainTextEdit(this);
            result->setReadOnly(true);
            result->setLineWrapMode(QPlainTextEdit::NoWrap);
            widget = result;
            break;
        }
        case Kind::Existing:
            widget = control.id == kTree ? static_cast<QWidget*>(GetTreeControl())
                                         : static_cast<QWidget*>(GetMessageList());
            widget->setAccessibleName(text);
            break;
        }
        obsidra::browser::PlaceControl(*widget, control.id, control.units, base);
    }

    auto* ok = static_cast<QPushButton*>(Control(kOk));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(static_cast<QListWidget*>(Control(kRootList)), &QListWidget::currentRowChanged, this,
            &CSegmentBrowserDlg::Rebuild);
    connect(static_cast<QPushButton*>(Control(kRefresh)), &QPushButton::clicked, this,
            &CSegmentBrowserDlg::Rebuild);
    connect(static_cast<QCheckBox*>(Control(kShowBoundings)), &QCheckBox::clicked, this,
            &CSegmentBrowserDlg::ShowBoundings);
    connect(static_cast<QComboBox*>(Control(kSearchType)), &QComboBox::currentIndexChanged, this,
            &CSegmentBrowserDlg::OnSearchTypeChanged);
    connect(static_cast<QPushButton*>(Control(kSearchButton)), &QPushButton::clicked, this,
            &CSegmentBrowserDlg::Search);
    connect(static_cast<QPushButton*>(Control(kLocateButton)), &QPushButton::clicked, this,
            &CSegmentBrowserDlg::LocateShell);

    auto* filter = static_cast<QLineEdit*>(Control(kNameFilterId));
    filter->setPlaceholderText(QStringLiteral("Filter segments by name"));
    filter->setClearButtonEnabled(true);
    // The filter walks the scene in slices between events, so that a key typed meanwhile is
    // read at once and drops the rest of the walk its predecessor started.
    m_filterTimer.setSingleShot(true);
    m_filterTimer.setInterval(0);
    connect(filter, &QLineEdit::textChanged, this, &CSegmentBrowserDlg::StartNameFilter);
    connect(&m_filterTimer, &QTimer::timeout, this, &CSegmentBrowserDlg::ContinueNameFilter);
    m_treeBelowFilter = GetTreeControl()->y() - filter->y();

    connect(static_cast<QPushButton*>(Control(kUndoId)), &QPushButton::clicked, this,
            &CSegmentBrowserDlg::Undo);
    connect(static_cast<QPushButton*>(Control(kRedoId)), &QPushButton::clicked, this,
            &CSegmentBrowserDlg::Redo);
    // Whatever changes the scene (a command here, an edit of the host) may change what can be
    // undone: the buttons are brought up to date once the change is over.
    m_undoButtonsTimer.setSingleShot(true);
    m_undoButtonsTimer.setInterval(0);
    connect(&m_undoButtonsTimer, &QTimer::timeout, this, &CSegmentBrowserDlg::UpdateUndoButtons);
    HC_Define_Change_Listener(&CSegmentBrowserDlg::OnSceneChanged, this);
    if (m_view) m_view->AddSelectionListener(&CSegmentBrowserDlg::OnViewSelectionChanged, this);
    // The row the user picks is marked in the view (ours: apart from the view's selection).
    connect(Tree(), &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        HighlightInView(WindowsTreeGraphItem::FromHandle(item));
    });
    UpdateUndoButtons();
    auto* undo = new QShortcut(QKeySequence::Undo, this);
    connect(undo, &QShortcut::activated, this, &CSegmentBrowserDlg::Undo);
    auto* redo = new QShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), this);
    connect(redo, &QShortcut::activated, this, &CSegmentBrowserDlg::Redo);

    setMinimumSize(kMinimumSize);
    resize(obsidra::browser::DialogUnitsToPixels(QRect(QPoint(), kTemplateSize), base).size());
}

QWidget* CSegmentBrowserDlg::Control(int controlId) const {
    return obsidra::browser::FindControl(*this, controlId);
}

int CSegmentBrowserDlg::StateImageFor(const TreeGraphItem& item) const {
    return obsidra::browser::StateImageOf(item);
}

// Nothing of the old tree survives a rebuild but its show-bounding choice.
void CSegmentBrowserDlg::Rebuild() {
    const int row = static_cast<QListWidget*>(Control(kRootList))->currentRow();
    const bool showBounding = m_model && m_model->GetShowBounding();
    m_model.reset();
    // A new tree starts whole: the filter box is emptied without filtering the old one.
    {
        const QSignalBlocker quiet(Control(kNameFilterId));
        static_cast<QLineEdit*>(Control(kNameFilterId))->clear();
    }
    switch (row) {
    case 0:
        if (m_view) m_rootKey = m_view->GetModel()->GetModelKey();
        break;
    case 1:
        if (m_view) m_rootKey = m_view->GetSceneKey();
        break;
    case 2:
        if (m_view) m_rootKey = m_view->GetViewKey();
        break;
    case 3:
        m_rootKey = HC_Open_Segment("/");
        HC_Close_Segment();
        break;
    default:
        break;
    }
    m_model = std::make_unique<HoopsSegmentTree>(m_view, this, m_rootKey, &m_notifier);
    m_model->SetShowBounding(showBounding);
}

void CSegmentBrowserDlg::ShowBoundings() {
    if (!m_ready || !m_model) return;
    const bool on = static_cast<QCheckBox*>(Control(kShowBoundings))->isChecked();
    m_model->SetShowBounding(on);
    if (TreeGraphItem* node = WindowsTreeGraphItem::FromHandle(Tree()->currentItem()))
        m_model->ShowBounding(node, on);
    m_model->RefreshSelectionStates();
}

void CSegmentBrowserDlg::OnSearchTypeChanged() {
    const QString text = static_cast<QComboBox*>(Control(kSearchType))->currentText();
    m_searchTypeCode = 0;
    for (const SearchType& type : kSearchTypeCodes)
        if (text == QString::fromUtf8(type.text)) m_searchTypeCode = type.code;
}

void CSegmentBrowserDlg::Search() {
    if (!m_model) return;
    const QByteArray text = static_cast<QLineEdit*>(Control(kSearchText))->text().toUtf8();
    TreeGraphItem* root = GetRoot();
    HoopsSegmentTree& tree = *m_model;
    // The codes 1 to 8 are the tree's search kinds; "Keys" finds a key text.
    using obsidra::scenetree::SearchKind;
    if (m_searchTypeCode == static_cast<int>(SearchKind::Key))
        tree.FindAndSelectByKeyText(text.constData(), root);
    else if (m_searchTypeCode >= static_cast<int>(SearchKind::Attribute) &&
             m_searchTypeCode <= static_cast<int>(SearchKind::Definition))
        tree.Search(static_cast<SearchKind>(m_searchTypeCode), text.toStdString(), root);
    else
        return;
    SelectFirstHit();
}

void CSegmentBrowserDlg::HighlightInView(TreeGraphItem* node) {
    if (!m_view) return;
    HC_KEY key = node && m_model ? node->GetKey() : -1;
    if (!IsObjectKey(key) || !obsidra::scenetree::IsAlive(key)) key = -1;
    const std::vector<HC_KEY> path =
        key == -1 ? std::vector<HC_KEY>() : m_model->GetIncludePath(node);
    if (key == -1 && m_view->GetHighlightedKey() == -1) return;
    m_view->HighlightItem(key, static_cast<int>(path.size()), path.data());
    m_view->Update();
}

void CSegmentBrowserDlg::Undo() {
    if (HC_Undo()) AfterUndoOrRedo();
}

void CSegmentBrowserDlg::Redo() {
    if (HC_Redo()) AfterUndoOrRedo();
}

// The tree is made again with what was open open, and the view draws what changed.
void CSegmentBrowserDlg::AfterUndoOrRedo() {
    if (m_model) m_model->Remake();
    if (m_view) m_view->Update();
    UpdateUndoButtons();
}

// "Undo <step>" and "Redo <step>", cut to the button's width with the whole text as a tip.
void CSegmentBrowserDlg::UpdateUndoButtons() {
    char name[HC_TEXT_MAX] = "";
    for (const auto& [id, word, can] :
         {std::tuple{kUndoId, "Undo", &HC_Show_Undo_Step}, {kRedoId, "Redo", &HC_Show_Redo_Step}}) {
        auto* button = static_cast<QPushButton*>(Control(id));
        name[0] = '\0';
        const bool possible = can(name);
        const QString text = possible && *name
                                 ? QStringLiteral("%1 %2").arg(word, QString::fromUtf8(name))
                                 : QString::fromUtf8(word);
        button->setEnabled(possible);
        button->setToolTip(text);
        button->setText(
            button->fontMetrics().elidedText(text, Qt::ElideRight, button->width() - 12));
    }
}

bool CSegmentBrowserDlg::IsNameFilterRunning() const {
    return m_model && m_model->IsNameFilterRunning();
}

void CSegmentBrowserDlg::StartNameFilter() {
    if (!m_model) return;
    const QByteArray text = static_cast<QLineEdit*>(Control(kNameFilterId))->text().toUtf8();
    if (text.isEmpty()) {
        ApplyNameFilter();
        return;
    }
    m_model->StartNameFilter(text.toStdString());
    m_filterTimer.start();
}

// A slice takes a few milliseconds at most, so keys wait no longer than that; it also ends
// when the first hits come into the tree, to have them drawn at once.
void CSegmentBrowserDlg::ContinueNameFilter() {
    using Progress = HoopsSegmentTree::NameFilterProgress;
    constexpr size_t kSegmentsPerStep = 4096;
    constexpr qint64 kSliceTime = 8; // milliseconds
    if (!m_model) return;
    QElapsedTimer slice;
    slice.start();
    for (;;) {
        // The row the user picked among the first hits stays current in the tree made again.
        const std::vector<HC_KEY> current = CurrentSegmentChain();
        const Progress progress = m_model->ContinueNameFilter(kSegmentsPerStep);
        if (progress != Progress::Walking) MakeCurrent(current);
        if (progress == Progress::Done) return;
        if (progress == Progress::FirstHitsShown || slice.elapsed() >= kSliceTime) break;
    }
    m_filterTimer.start();
}

// The node current in the filtered tree stays current in the whole one, in sight.
void CSegmentBrowserDlg::ApplyNameFilter() {
    m_filterTimer.stop();
    if (!m_model) return;
    const QByteArray text = static_cast<QLineEdit*>(Control(kNameFilterId))->text().toUtf8();
    const std::vector<HC_KEY> current = CurrentSegmentChain();
    m_model->SetNameFilter(text.toStdString());
    if (text.isEmpty()) MakeCurrent(current);
}

std::vector<HC_KEY> CSegmentBrowserDlg::CurrentSegmentChain() const {
    return m_model->SegmentChain(WindowsTreeGraphItem::FromHandle(Tree()->currentItem()));
}

void CSegmentBrowserDlg::MakeCurrent(const std::vector<HC_KEY>& chain) {
    if (chain.empty()) return;
    auto* node = static_cast<WindowsTreeGraphItem*>(m_model->RevealSegmentChain(chain));
    if (QTreeWidgetItem* handle = node ? node->GetHandle() : nullptr) {
        Tree()->setCurrentItem(handle);
        Tree()->scrollToItem(handle);
    }
}

// The first hit comes into sight and becomes the current row, so that its lines show.
void CSegmentBrowserDlg::SelectFirstHit() {
    if (!m_model || m_model->GetRevealedNodes().empty()) return;
    auto* first = static_cast<WindowsTreeGraphItem*>(m_model->GetRevealedNodes().front());
    if (QTreeWidgetItem* handle = first->GetHandle()) {
        Tree()->setCurrentItem(handle);
        Tree()->scrollToItem(handle);
    }
}

void CSegmentBrowserDlg::LocateShell() {
    const QString number = static_cast<QLineEdit*>(Control(kLocateNumber))->text();
    const HC_KEY shell = obsidra::browser::FindShellByNumber(
        obsidra::browser::ParseShellNumber(number.toStdString()));
    if (!shell) {
        ShowMessage(QStringLiteral("没有搜索结果"));
        return;
    }
    char path[HC_TEXT_MAX] = "";
    const HC_KEY owner = HC_Show_Owner_By_Key(shell, path);
    m_locateResult = QString::fromUtf8(obsidra::browser::LocateResultText(shell, owner, path));
    if (m_view) {
        HSelectionSet* selection = m_view->GetSelection();
        if (selection->IsSelected(shell))
            selection->DeSelect(shell);
        else
            selection->Select(shell);
    }
    if (m_model) m_model->RefreshSelectionStates();
    if (m_view) m_view->Update();
    // The edit control shows the text's line break; the text itself keeps its "\r\n".
    static_cast<QPlainTextEdit*>(Control(kLocateResult))
        ->setPlainText(
            QString(m_locateResult).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
}

std::unique_ptr<QMenu>
CSegmentBrowserDlg::ContextMenuFor(const CSegTreeCtrl::ContextRequest& request) {
    if (!m_model || !request.node) return nullptr;
    if ((request.modifiers & Qt::ControlModifier) && IsObjectKey(request.node->GetKey())) {
        OnCommand(obsidra::scenetree::kCmdZoomToSegment, request.node);
        return nullptr;
    }
    const int menu = obsidra::browser::ChooseContextMenu(*m_model, request.node);
    return menu ? obsidra::browser::MakeBrowserMenu(menu, this) : nullptr;
}

// A command may rebuild the tree ("Optimize"): nothing of the old model is touched after it.
void CSegmentBrowserDlg::OnCommand(int commandId, TreeGraphItem* node) {
    if (!m_model) return;
    obsidra::browser::BrowserCommandHost host(*this);
    obsidra::scenetree::SegmentCommands(*m_model, host).Run(commandId, node);
    if (commandId == obsidra::scenetree::kCmdGotoStyleInclude) SelectFirstHit();
}

int CSegmentBrowserDlg::RunDialog(QDialog& dialog) {
    return m_dialogRunner ? m_dialogRunner(dialog) : dialog.exec();
}

QString CSegmentBrowserDlg::ChooseFile(const obsidra::scenetree::FileRequest& request, bool save) {
    return m_fileChooser ? m_fileChooser(request, save)
                         : obsidra::browser::ChooseFile(Tree(), request, save);
}

void CSegmentBrowserDlg::ShowMessage(const QString& text) {
    if (m_messageBox)
        m_messageBox(text);
    else
        QMessageBox::information(this, QString(), text);
}

void CSegmentBrowserDlg::Notifier::ShowMessage(const char* text) {
    m_dialog->ShowMessage(QString::fromUtf8(text));
}

// Fixed pixel margins: the lists follow the width, the tree the height, OK the corner. The
// "Show Boundings" box is greyed from the first sizing on.
void CSegmentBrowserDlg::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    const int width = this->width();
    const int height = this->height();
    if (QWidget* box = Control(kShowBoundings)) box->setEnabled(false);
    QWidget* list = GetMessageList();
    list->setGeometry(list->x(), list->y(), width - 15, 60);
    QWidget* tree = GetTreeControl();
    tree->setGeometry(tree->x(), tree->y(), width - 15, height - 190 - m_treeBelowFilter);
    // The filter box takes the width the undo and redo buttons, kept at the right, leave it.
    QWidget* undo = Control(kUndoId);
    QWidget* redo = Control(kRedoId);
    const int gap = redo->x() - (undo->x() + undo->width());
    redo->move(width - 8 - redo->width(), redo->y());
    undo->move(redo->x() - gap - undo->width(), undo->y());
    QWidget* filter = Control(kNameFilterId);
    filter->setGeometry(filter->x(), filter->y(), undo->x() - gap - filter->x(), filter->height());
    Control(kOk)->move(width - 80, height - 28);
}

void CSegmentBrowserDlg::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (m_model) m_model->RefreshSelectionStates();
}

void CSegmentBrowserDlg::closeEvent(QCloseEvent* event) {
    m_ready = false;
    HighlightInView(nullptr);
    QDialog::closeEvent(event);
}

// Enter and Escape belong to an open label editor, not to the dialog's OK and Cancel.
void CSegmentBrowserDlg::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if ((key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape) &&
        Tree()->GetLabelEditor()) {
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}
