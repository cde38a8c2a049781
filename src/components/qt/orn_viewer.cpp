#include "components/qt/orn_viewer.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QResizeEvent>

#include "components/qt/dialog_units.h"
#include "components/qt/muti_tree_ctrl.h"

namespace obsidra::components::qt {

OrnViewer::OrnViewer(ComponentHost* host, QWidget* parent)
    : QDialog(parent), m_tree(new CMutiTreeCtrl(this)), m_filter(new QLineEdit(this)),
      m_information(new QPlainTextEdit(this)), m_treeType(new QComboBox(this)) {
    setWindowTitle(QStringLiteral("Dialog"));
    setSizeGripEnabled(false);
    const DialogUnits units(font());

    // The filter box takes the top of the tree's place; the tree keeps its bottom edge.
    PlaceControl(m_filter, kFilterId, units, {7, 7, 259, 12});
    m_filter->setPlaceholderText(QStringLiteral("筛选"));
    m_filter->setClearButtonEnabled(true);
    PlaceControl(m_tree, kTreeId, units, {7, 21, 259, 236});
    PlaceControl(m_information, kInformationId, units, {267, 7, 182, 265});
    m_information->setLineWrapMode(QPlainTextEdit::NoWrap);

    auto* refreshHighlight = new QPushButton(QStringLiteral("刷新高亮"), this);
    PlaceControl(refreshHighlight, kRefreshHighlightId, units, {7, 258, 50, 14});
    auto* treeTypeLabel = new QLabel(QStringLiteral("控制树类型："), this);
    PlaceControl(treeTypeLabel, -1, units, {60, 264, 49, 8});
    m_treeType->addItems({QStringLiteral("按楼层"), QStringLiteral("按专业")});
    m_treeType->setCurrentIndex(static_cast<int>(Grouping::ByDiscipline));
    // The template's height is that of the open list; the closed box is as tall as the buttons.
    PlaceControl(m_treeType, kTreeTypeId, units, {108, 258, 96, 14});
    auto* refreshTree = new QPushButton(QStringLiteral("刷新控制树"), this);
    PlaceControl(refreshTree, kRefreshTreeId, units, {216, 258, 50, 14});
    // Enter in the tree or the edit box must not press a refresh button.
    for (QPushButton* button : {refreshHighlight, refreshTree})
        button->setAutoDefault(false);

    connect(refreshHighlight, &QPushButton::clicked, this, &OrnViewer::RefreshHighlight);
    connect(refreshTree, &QPushButton::clicked, this, &OrnViewer::RefreshControlTree);
    connect(m_filter, &QLineEdit::textChanged, m_tree, &CMutiTreeCtrl::SetFilterText);

    m_tree->SetInformationBox(m_information);
    m_tree->SetHost(host);

    // The client area reaches the template's right and bottom controls plus the left margin.
    resize(units.Size(449 + 7, 272 + 7));
    RecordLayout();
    ApplyLayout();
    setMinimumSize(size());
}

void OrnViewer::RefreshControlTree() {
    ComponentTree& tree = m_tree->Tree();
    tree.Clear();
    if (const std::optional<Grouping> grouping = GroupingFromIndex(m_treeType->currentIndex()))
        tree.SetGrouping(*grouping);
    tree.RebuildFromHost();
    // The new tree is shown whole; a filter typed before applies again.
    m_tree->SetFilterText(m_filter->text());
}

void OrnViewer::RefreshHighlight() {
    m_tree->Tree().RefreshHighlightFromHost();
}

void OrnViewer::Select(std::uint64_t componentHandle) {
    m_tree->Tree().MarkComponent(componentHandle);
}

void OrnViewer::reject() {
    QDialog::reject();
    m_tree->Tree().Clear();
    emit Closed();
    deleteLater();
}

void OrnViewer::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    if (m_laidOut) ApplyLayout();
}

void OrnViewer::RecordLayout() {
    const QRect tree = m_tree->geometry();
    const QRect information = m_information->geometry();
    const QRect client = rect();
    m_margins.treeTopLeft = tree.topLeft();
    m_margins.treeToInformation = information.left() - (tree.right() + 1);
    m_margins.treeBottomGap = client.bottom() - tree.bottom();
    m_margins.informationTop = information.top();
    m_margins.informationRightGap = client.right() - information.right();
    m_margins.informationBottomGap = client.bottom() - information.bottom();
    m_laidOut = true;
}

// The tree's right edge follows the edit box's left edge before the box moves, so the tree
// keeps its width and the information box takes every change in width.
void OrnViewer::ApplyLayout() {
    const QRect client = rect();
    QRect tree = m_tree->geometry();
    tree.setTopLeft(m_margins.treeTopLeft);
    tree.setRight(m_information->geometry().left() - m_margins.treeToInformation - 1);
    tree.setBottom(client.bottom() - m_margins.treeBottomGap);

    QRect information;
    information.setLeft(tree.right() + 1 + m_margins.treeToInformation);
    information.setTop(m_margins.informationTop);
    information.setRight(client.right() - m_margins.informationRightGap);
    information.setBottom(client.bottom() - m_margins.informationBottomGap);

    m_tree->setGeometry(tree);
    m_filter->setGeometry(QRect(tree.left(), m_filter->y(), tree.width(), m_filter->height()));
    m_information->setGeometry(information);
    update();
}

} // namespace obsidra::components::qt
