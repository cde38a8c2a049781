#include "browser/browser_command_host.h"

#include <QDir>
#include <QFileDialog>

#include "browser/optimize_dialog.h"
#include "browser/segment_browser_dlg.h"
#include "browser/xml_editor_dlg2.h"

namespace obsidra::browser {

using obsidra::scenetree::FileRequest;
using obsidra::scenetree::OptimizeOptions;

std::optional<std::string> BrowserCommandHost::EditText(const std::string& text,
                                                        const std::string& caption) {
    XMLEditorDlg2 editor(m_dialog.Tree(), QString::fromStdString(text),
                         QString::fromStdString(caption));
    if (m_dialog.RunDialog(editor) != QDialog::Accepted) return std::nullopt;
    return editor.GetText().toStdString();
}

std::optional<std::string> BrowserCommandHost::OpenFileName(const FileRequest& request) {
    const QString file = m_dialog.ChooseFile(request, false);
    if (file.isEmpty()) return std::nullopt;
    return file.toStdString();
}

std::optional<std::string> BrowserCommandHost::SaveFileName(const FileRequest& request) {
    const QString file = m_dialog.ChooseFile(request, true);
    if (file.isEmpty()) return std::nullopt;
    return file.toStdString();
}

std::optional<OptimizeOptions> BrowserCommandHost::OptimizeChoices() {
    COptimizeDialog choices(m_dialog.Tree());
    if (m_dialog.RunDialog(choices) != QDialog::Accepted) return std::nullopt;
    return choices.GetOptions();
}

void BrowserCommandHost::ShowMessage(const std::string& text) {
    m_dialog.ShowMessage(QString::fromStdString(text));
}

void BrowserCommandHost::RebuildTree() {
    m_dialog.Rebuild();
}

QString FileDialogFilter(const std::string& filter) {
    const QStringList fields = QString::fromStdString(filter).split('|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < fields.size(); i += 2) {
        if (fields[i].isEmpty()) continue;
        filters << (fields[i].contains('(')
                        ? fields[i]
                        : fields[i] + " (" + QString(fields[i + 1]).replace(';', ' ') + ")");
    }
    return filters.join(QStringLiteral(";;"));
}

QString ChooseFile(QWidget* owner, const FileRequest& request, bool save) {
    QFileDialog dialog(owner, QString(), QDir::currentPath(), FileDialogFilter(request.filter));
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setDefaultSuffix(QString::fromStdString(request.defaultExtension));
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !request.overwritePrompt);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return QString();
    return dialog.selectedFiles().front();
}

} // namespace obsidra::browser
