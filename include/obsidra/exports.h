// The module's outward face: what a host calls to open, feed and close the three dialogs.
//
// A host loads libObsidraMFCDll.so (QLibrary, dlopen, or by linking Obsidra::ObsidraMFCDll)
// and calls these five functions on the thread that runs its QApplication's event loop. The
// host owns every object it passes, and each must outlive the dialog that received it; call
// ClearAllDialog before the view or the component host goes away, and before unloading the
// module. An export called without a QApplication, or from another thread, writes one line to
// stderr and does nothing else.
#pragma once

#include <cstdint>

#include <obsidra/host.h>

class HBaseView;

#define OBSIDRA_MODULE_EXPORT __attribute__((visibility("default")))

namespace obsidra {

// The host's view object: its accessor returns the view the segment browser inspects.
class SegmentViewerView {
public:
    virtual HBaseView* GetHBaseView() = 0;

protected:
    ~SegmentViewerView() = default;
};

// The object a host hands to ShowSegmentViewerDialog. The module asks it once, when the
// browser is made, for the view object and that for the HBaseView.
class SegmentViewerHost {
public:
    virtual SegmentViewerView* GetView() = 0;

protected:
    ~SegmentViewerHost() = default;
};

} // namespace obsidra

extern "C" {

// Replaces any open segment browser with a new one over the host's view. parentWindow is a
// QWidget* (or null) that the browser keeps for its messages and file dialogs.
OBSIDRA_MODULE_EXPORT void ShowSegmentViewerDialog(void* parentWindow,
                                                   obsidra::SegmentViewerHost* host);
// Opens the component viewer over the host's building the first time; later calls only show
// it again.
OBSIDRA_MODULE_EXPORT void ShowOrnViewerDialog(void* parentWindow, obsidra::ComponentHost* host);
// Marks one component of the host (its handle from the project data) in the open component
// viewer; does nothing when none is open.
OBSIDRA_MODULE_EXPORT void OrnViewerSelect(const std::uint64_t& componentHandle);
// Runs the statistics dialog modally; returns when the user closes it.
OBSIDRA_MODULE_EXPORT void ShowOrnTongJiDialog(void* unused, obsidra::ComponentHost* host);
// Deletes the segment browser, then the component viewer, where they exist.
OBSIDRA_MODULE_EXPORT void ClearAllDialog();

} // extern "C"
