#include "browser/optimize_dialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>

#include "browser/dialog_units.h"

using obsidra::scenetree::OptimizeOptions;

namespace {

constexpr int kUserDataNothing = 1324;
constexpr int kUserDataDiscard = 1325;
constexpr int kUserDataPreserve = 1326;
constexpr int kUserDataMerge = 1328;
constexpr int kUserDataLocalize = 1000;

// One value of the dialog: a radio group (the ids of its buttons in order) or a check box.
struct Value {
    int OptimizeOptions::*field;
    const char* group; // the frame drawn around it; null: inside the one before
    QRect frame;
    struct Button {
        int id;
        const char* text;
        QRect units;
    };
    std::vector<Button> buttons; // one for a check box
    bool radio;
};

// Template 1565, in dialog units.
const Value kValues[] = {
    {&OptimizeOptions::includes,
     "Includes",
     {7, 5, 116, 50},
     {{1310, "Do Nothing", {14, 16, 100, 10}},
      {1311, "Process Includes", {14, 28, 100, 10}},
      {1312, "Expand Includes", {14, 40, 100, 10}}},
     true},
    {&OptimizeOptions::collapseMatrices,
     "General",
     {7, 60, 116, 74},
     {{1329, "Collapse Matrices", {14, 71, 100, 10}}},
     false},
    {&OptimizeOptions::localizeMatrices,
     nullptr,
     {},
     {{1315, "Localize Matrices", {14, 83, 100, 10}}},
     false},
    {&OptimizeOptions::removeDuplicate,
     nullptr,
     {},
     {{1317, "Remove Duplicate", {14, 95, 100, 10}}},
     false},
    {&OptimizeOptions::extractAttributes,
     nullptr,
     {},
     {{1321, "Extract Attributes", {14, 107, 100, 10}}},
     false},
    {&OptimizeOptions::generateMapping,
     nullptr,
     {},
     {{1322, "Generate Mapping", {14, 119, 100, 10}}},
     false},
    {&OptimizeOptions::shells,
     "Shells",
     {7, 139, 116, 50},
     {{1318, "Do Nothing", {14, 150, 100, 10}},
      {1319, "Merge", {14, 162, 100, 10}},
      {1320, "Instance", {14, 174, 100, 10}}},
     true},
    {&OptimizeOptions::userData,
     "User Data",
     {128, 5, 116, 74},
     {{kUserDataNothing, "Do Nothing", {135, 16, 100, 10}},
      {kUserDataDiscard, "Discard", {135, 28, 100, 10}},
      {kUserDataPreserve, "Preserve", {135, 40, 100, 10}}},
     true},
    {&OptimizeOptions::userDataMerge,
     nullptr,
     {},
     {{kUserDataMerge, "Merge", {147, 52, 90, 10}}},
     false},
    {&OptimizeOptions::userDataLocalize,
     nullptr,
     {},
     {{kUserDataLocalize, "Localize", {147, 64, 90, 10}}},
     false},
    {&OptimizeOptions::namesDiscard,
     "Segment Names",
     {128, 84, 116, 50},
     {{1340, "Discard", {135, 95, 100, 10}}},
     false},
    {&OptimizeOptions::namesRecord, nullptr, {}, {{1341, "Record", {135, 107, 100, 10}}}, false},
    {&OptimizeOptions::namesSequence,
     nullptr,
     {},
     {{1342, "Sequence", {135, 119, 100, 10}}},
     false},
    {&OptimizeOptions::reorganize,
     "Reorganize",
     {128, 139, 116, 62},
     {{1332, "Do Nothing", {135, 150, 105, 10}},
      {1333, "Attributes and Spatial", {135, 162, 105, 10}},
      {1334, "Attributes only", {135, 174, 105, 10}},
      {1335, "Spatial only", {135, 186, 105, 10}}},
     true},
};

constexpr QSize kTemplateSize(250, 246);
constexpr QRect kOkUnits(139, 224, 50, 14);
constexpr QRect kCancelUnits(194, 224, 50, 14);

} // namespace

COptimizeDialog::COptimizeDialog(QWidget* owner) : QDialog(owner) {
    using namespace obsidra::browser;
    setWindowTitle(QStringLiteral("Optimize Segment"));
    const QSize base = UseTemplateFont(*this);
    for (const Value& value : kValues) {
        if (value.group) {
            auto* frame = new QGroupBox(QString::fromUtf8(value.group), this);
            PlaceControl(*frame, 0, value.frame, base);
        }
        auto* group = value.radio ? new QButtonGroup(this) : nullptr;
        for (const Value::Button& entry : value.buttons) {
            const QString text = QString::fromUtf8(entry.text);
            QAbstractButton* button =
                value.radio ? static_cast<QAbstractButton*>(new QRadioButton(text, this))
                            : new QCheckBox(text, this);
            PlaceControl(*button, entry.id, entry.units, base);
            if (group) group->addButton(button);
        }
    }
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    PlaceControl(*ok, 1, kOkUnits, base);
    PlaceControl(*cancel, 2, kCancelUnits, base);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(Control(kUserDataNothing), &QAbstractButton::clicked, this,
            [this] { EnableUserDataBoxes(false); });
    connect(Control(kUserDataDiscard), &QAbstractButton::clicked, this,
            [this] { EnableUserDataBoxes(false); });
    connect(Control(kUserDataPreserve), &QAbstractButton::clicked, this,
            [this] { EnableUserDataBoxes(true); });
    setFixedSize(DialogUnitsToPixels(QRect(QPoint(), kTemplateSize), base).size());

    EnableUserDataBoxes(true);
    ShowValues();
}

QAbstractButton* COptimizeDialog::Control(int controlId) const {
    return qobject_cast<QAbstractButton*>(obsidra::browser::FindControl(*this, controlId));
}

void COptimizeDialog::SetOptions(const OptimizeOptions& options) {
    m_options = options;
    ShowValues();
}

void COptimizeDialog::EnableUserDataBoxes(bool enable) {
    Control(kUserDataMerge)->setEnabled(enable);
    Control(kUserDataLocalize)->setEnabled(enable);
}

void COptimizeDialog::ShowValues() {
    for (const Value& value : kValues) {
        const int chosen = m_options.*value.field;
        for (size_t i = 0; i < value.buttons.size(); ++i)
            Control(value.buttons[i].id)
                ->setChecked(value.radio ? chosen == static_cast<int>(i) : chosen != 0);
    }
}

void COptimizeDialog::accept() {
    for (const Value& value : kValues) {
        int chosen = 0;
        for (size_t i = 0; i < value.buttons.size(); ++i)
            if (Control(value.buttons[i].id)->isChecked())
                chosen = value.radio ? static_cast<int>(i) : 1;
        m_options.*value.field = chosen;
    }
    QDialog::accept();
}
