// The statistics dialog "统计": how many components each minor category of the host's model
// holds, and their total. Run modally; it keeps nothing after it closes.
#pragma once

#include <QDialog>

#include <obsidra/host.h>

class QLabel;
class QTreeWidget;

namespace obsidra::components::qt {

class CUxTongJiDialog final : public QDialog {
    Q_OBJECT

public:
    static constexpr int kOkId = 1;
    static constexpr int kCancelId = 2;
    static constexpr int kTotalId = 1010;
    static constexpr int kListId = 1011;

    // The host is not owned; its counts are read once, here.
    explicit CUxTongJiDialog(ComponentHost* host, QWidget* parent = nullptr);

    QTreeWidget* List() const { return m_list; }
    QLabel* TotalLine() const { return m_total; }

private:
    QTreeWidget* m_list;
    QLabel* m_total;
};

} // namespace obsidra::components::qt
