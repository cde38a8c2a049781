#include "host/ifc/ifc_progress.h"

#include <algorithm>

namespace obsidra::host::ifc {

namespace {

// Where each phase starts and ends in the whole import, roughly as the time goes on the
// project's sample files: meshing dominates, reading is a file copy.
constexpr double kPhaseStart[] = {0.0, 0.02, 0.30, 0.90};
constexpr double kPhaseEnd[] = {0.02, 0.30, 0.90, 1.0};

} // namespace

std::string_view PhaseName(ImportPhase phase) {
    switch (phase) {
    case ImportPhase::Reading:
        return "reading";
    case ImportPhase::Parsing:
        return "parsing";
    case ImportPhase::Meshing:
        return "meshing";
    case ImportPhase::Building:
        return "building";
    }
    return "";
}

bool ImportProgress::Report(ImportPhase phase, double phaseFraction) {
    if (m_cancelled) return false;
    const int index = static_cast<int>(phase);
    // Capped at the phase's end, which rounding would pass, so that the next phase's start
    // never lies below it.
    const double fraction =
        std::min(kPhaseEnd[index], kPhaseStart[index] + (kPhaseEnd[index] - kPhaseStart[index]) *
                                                            std::clamp(phaseFraction, 0.0, 1.0));
    m_last = std::max(m_last, fraction);
    if (m_callback && !m_callback(phase, m_last)) m_cancelled = true;
    return !m_cancelled;
}

} // namespace obsidra::host::ifc
