#include "host/viewer/dialog_module.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>

namespace obsidra::host::viewer {

namespace {

constexpr const char* kModuleName = "libObsidraMFCDll.so";

QStringList Candidates() {
    const QString programDir = QCoreApplication::applicationDirPath();
    return {programDir + "/" + kModuleName, programDir + "/../lib/" + kModuleName,
            QStringLiteral(OBSIDRA_BUILT_MODULE)};
}

template <typename Function>
bool Resolve(QLibrary& library, const char* name, Function& function, QString& error) {
    function = reinterpret_cast<Function>(library.resolve(name));
    if (!function) error = library.fileName() + " does not export " + name;
    return function != nullptr;
}

} // namespace

bool DialogModule::Load(QString& error) {
    if (IsLoaded()) return true;
    for (const QString& candidate : Candidates()) {
        if (!QFileInfo::exists(candidate)) continue;
        m_library.setFileName(candidate);
        if (!m_library.load()) {
            error = m_library.errorString();
            return false;
        }
        return Resolve(m_library, "ShowSegmentViewerDialog", m_showSegmentViewer, error) &&
               Resolve(m_library, "ShowOrnViewerDialog", m_showOrnViewer, error) &&
               Resolve(m_library, "OrnViewerSelect", m_ornViewerSelect, error) &&
               Resolve(m_library, "ShowOrnTongJiDialog", m_showOrnTongJi, error) &&
               Resolve(m_library, "ClearAllDialog", m_clearAll, error);
    }
    error = QString("no %1 beside the program, in ../lib or at %2")
                .arg(kModuleName, QStringLiteral(OBSIDRA_BUILT_MODULE));
    return false;
}

void DialogModule::ShowSegmentBrowser(QWidget* parent, SegmentViewerHost* host) const {
    if (IsLoaded()) m_showSegmentViewer(parent, host);
}

void DialogModule::ShowComponentViewer(QWidget* parent, ComponentHost* host) const {
    if (IsLoaded()) m_showOrnViewer(parent, host);
}

void DialogModule::SelectComponent(std::uint64_t handle) const {
    if (IsLoaded()) m_ornViewerSelect(handle);
}

void DialogModule::ShowStatistics(ComponentHost* host) const {
    if (IsLoaded()) m_showOrnTongJi(nullptr, host);
}

void DialogModule::ClearAll() const {
    if (IsLoaded()) m_clearAll();
}

} // namespace obsidra::host::viewer
