#include "browser/xml_editor_dlg2.h"

#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPushButton>

#include "browser/dialog_units.h"

namespace {

// Template 320, in dialog units.
constexpr int kEditor = 1312;
constexpr QSize kTemplateSize(387, 158);
constexpr QRect kEditorUnits(7, 7, 373, 122);
constexpr QRect kOkUnits(276, 137, 50, 14);
constexpr QRect kCancelUnits(330, 137, 50, 14);

} // namespace

XMLEditorDlg2::XMLEditorDlg2(QWidget* owner, const QString& text, const QString& caption)
    : QDialog(owner), m_text(text), m_editor(new QPlainTextEdit(this)) {
    using namespace obsidra::browser;
    setWindowTitle(caption.isEmpty() ? QStringLiteral("Edit Window") : caption);
    const QSize base = UseTemplateFont(*this);
    m_editor->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_editor->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    m_editor->setPlainText(text);
    PlaceControl(*m_editor, kEditor, kEditorUnits, base);
    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    PlaceControl(*ok, 1, kOkUnits, base);
    PlaceControl(*cancel, 2, kCancelUnits, base);
    // Enter belongs to the text: no button presses itself on it.
    ok->setAutoDefault(false);
    cancel->setAutoDefault(false);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    setFixedSize(DialogUnitsToPixels(QRect(QPoint(), kTemplateSize), base).size());
    m_editor->setFocus();
}

void XMLEditorDlg2::accept() {
    m_text = m_editor->toPlainText();
    QDialog::accept();
}

// Escape does not close the window: only Cancel or the close box do.
void XMLEditorDlg2::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter) {
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}
