#pragma once

#include <QDialog>

#include "scenetree/optimize_options.h"

class QAbstractButton;

// "Optimize Segment": the choices of a segment-tree optimisation, one value per radio group or
// box, with the defaults set at construction. OK copies the controls into the values.
class COptimizeDialog : public QDialog {
    Q_OBJECT

public:
    explicit COptimizeDialog(QWidget* owner);

    const obsidra::scenetree::OptimizeOptions& GetOptions() const { return m_options; }
    // Shows other values in the controls.
    void SetOptions(const obsidra::scenetree::OptimizeOptions& options);
    // The control of that id, or null.
    QAbstractButton* Control(int controlId) const;

    void accept() override;

private:
    // "Merge" and "Localize" only mean something while user data is preserved.
    void EnableUserDataBoxes(bool enable);
    void ShowValues();

    obsidra::scenetree::OptimizeOptions m_options;
};
