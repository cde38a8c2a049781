// The module's dialogs, reached as any host reaches them: libObsidraMFCDll.so loaded at run
// time and its five exports called by name.
#pragma once

#include <QLibrary>
#include <QString>
#include <cstdint>

#include <obsidra/exports.h>

class QWidget;

namespace obsidra::host::viewer {

class DialogModule {
public:
    // Loads the module from beside the program, from ../lib (an installed layout), else from
    // where the build made it. False with the reason when none loads or an export is missing.
    bool Load(QString& error);
    bool IsLoaded() const { return m_clearAll != nullptr; }
    QString FileName() const { return m_library.fileName(); }

    // Each does nothing while the module is not loaded.
    void ShowSegmentBrowser(QWidget* parent, SegmentViewerHost* host) const;
    void ShowComponentViewer(QWidget* parent, ComponentHost* host) const;
    void SelectComponent(std::uint64_t handle) const;
    // Modal: returns when the user closes the dialog.
    void ShowStatistics(ComponentHost* host) const;
    void ClearAll() const;

private:
    QLibrary m_library;
    decltype(&::ShowSegmentViewerDialog) m_showSegmentViewer = nullptr;
    decltype(&::ShowOrnViewerDialog) m_showOrnViewer = nullptr;
    decltype(&::OrnViewerSelect) m_ornViewerSelect = nullptr;
    decltype(&::ShowOrnTongJiDialog) m_showOrnTongJi = nullptr;
    decltype(&::ClearAllDialog) m_clearAll = nullptr;
};

} // namespace obsidra::host::viewer
