#pragma once

#include <QString>

#include "scenetree/segment_commands.h"

class CSegmentBrowserDlg;
class QWidget;

namespace obsidra::browser {

// How the browser answers its commands' questions: the text window, the optimise dialog, file
// dialogs and message boxes, each owned by the tree control and run through the browser's
// seams, so that tests can answer them.
class BrowserCommandHost : public obsidra::scenetree::SegmentCommandHost {
public:
    explicit BrowserCommandHost(CSegmentBrowserDlg& dialog) : m_dialog(dialog) {}

    std::optional<std::string> EditText(const std::string& text,
                                        const std::string& caption) override;
    std::optional<std::string>
    OpenFileName(const obsidra::scenetree::FileRequest& request) override;
    std::optional<std::string>
    SaveFileName(const obsidra::scenetree::FileRequest& request) override;
    std::optional<obsidra::scenetree::OptimizeOptions> OptimizeChoices() override;
    void ShowMessage(const std::string& text) override;
    void RebuildTree() override;

private:
    CSegmentBrowserDlg& m_dialog;
};

// A file dialog's filter from the "Description (*.ext)|*.ext||" form: the descriptions, with
// their patterns where they do not show them, separated by ";;".
QString FileDialogFilter(const std::string& filter);

// Shows a file dialog as the request asks, starting in the current directory; an empty text
// when it is cancelled.
QString ChooseFile(QWidget* owner, const obsidra::scenetree::FileRequest& request, bool save);

} // namespace obsidra::browser
