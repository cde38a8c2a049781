#pragma once

#include <QDialog>
#include <QString>

class QPlainTextEdit;

// The browser's text window ("Edit Window"): shows a text to read or edit in a multi-line box
// that takes Enter and Escape for itself, with OK and Cancel. Every command that shows or asks
// for a text opens it modally.
class XMLEditorDlg2 : public QDialog {
    Q_OBJECT

public:
    // An empty caption keeps the window's own.
    XMLEditorDlg2(QWidget* owner, const QString& text, const QString& caption = QString());

    // The text as OK left it (the initial text until then).
    const QString& GetText() const { return m_text; }
    QPlainTextEdit* Editor() const { return m_editor; }

    void accept() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString m_text;
    QPlainTextEdit* m_editor;
};
