// Progress reporting and cancellation of an import.
#pragma once

#include <functional>
#include <string_view>
#include <utility>

namespace obsidra::host::ifc {

enum class ImportPhase { Reading, Parsing, Meshing, Building };

// "reading", "parsing", "meshing", "building".
std::string_view PhaseName(ImportPhase phase);

// Told the phase and the fraction of the whole import done (0 to 1, never decreasing); returns
// false to cancel the import.
using ProgressCallback = std::function<bool(ImportPhase phase, double fraction)>;

// Turns each phase's own fraction into the fraction of the whole import and remembers a
// cancellation, so that every later report answers "stop".
class ImportProgress {
public:
    explicit ImportProgress(ProgressCallback callback) : m_callback(std::move(callback)) {}

    // False once the callback has asked to cancel.
    bool Report(ImportPhase phase, double phaseFraction);
    bool Cancelled() const { return m_cancelled; }

private:
    ProgressCallback m_callback;
    double m_last = 0;
    bool m_cancelled = false;
};

} // namespace obsidra::host::ifc
