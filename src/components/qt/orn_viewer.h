// The component viewer: the control tree of the host's building beside the selected node's
// information, with the grouping to build by and the refresh buttons. Modeless; it deletes
// itself when closed and says so first, so that whoever keeps a pointer to it can drop it.
#pragma once

#include <QDialog>
#include <cstdint>

#include <obsidra/host.h>

class QComboBox;
class QLineEdit;
class QPlainTextEdit;

namespace obsidra::components::qt {

class CMutiTreeCtrl;

class OrnViewer final : public QDialog {
    Q_OBJECT

public:
    static constexpr int kRefreshTreeId = 1003;
    static constexpr int kTreeTypeId = 1004;
    static constexpr int kInformationId = 1012;
    static constexpr int kTreeId = 1013;
    static constexpr int kRefreshHighlightId = 1014;
    // Beyond the template: the filter box above the tree.
    static constexpr int kFilterId = 2101;

    // The host is not owned and must outlive the dialog. The tree stays empty until the first
    // RefreshControlTree, which the opener runs once the dialog is shown.
    explicit OrnViewer(ComponentHost* host, QWidget* parent = nullptr);

    // Rebuilds the tree from the host's projects in the grouping the combo box shows, then
    // fetches the highlight.
    void RefreshControlTree();
    // Marks red the components the host has selected now, and their ancestors.
    void RefreshHighlight();
    // Adds one host component (and its ancestors) to the red marks, shown at the next paint; a
    // handle no component has changes nothing.
    void Select(std::uint64_t componentHandle);

    CMutiTreeCtrl* Tree() const { return m_tree; }
    QLineEdit* FilterBox() const { return m_filter; }

public slots:
    // The frame's close box and Escape end here: the tree is emptied, Closed is emitted and the
    // dialog is deleted once control returns to the event loop.
    void reject() override;

signals:
    void Closed();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    // Distances taken at initialisation, in client coordinates, that every later layout keeps.
    struct Margins {
        QPoint treeTopLeft;
        int treeToInformation = 0;
        int treeBottomGap = 0;
        int informationTop = 0;
        int informationRightGap = 0;
        int informationBottomGap = 0;
    };

    void RecordLayout();
    void ApplyLayout();

    CMutiTreeCtrl* m_tree;
    QLineEdit* m_filter;
    QPlainTextEdit* m_information;
    QComboBox* m_treeType;
    Margins m_margins;
    bool m_laidOut = false;
};

} // namespace obsidra::components::qt
