#pragma once

#include <string>

namespace obsidra::entry {

// Stands for the module's own state during one export call: the module's Qt resources are
// registered, and the C library's character-type locale is one that converts UTF-8 (the
// narrow text of the headless layers). The host's locale comes back on every way out.
class ModuleStateGuard {
public:
    ModuleStateGuard();
    ~ModuleStateGuard();
    ModuleStateGuard(const ModuleStateGuard&) = delete;
    ModuleStateGuard& operator=(const ModuleStateGuard&) = delete;

private:
    std::string m_hostCtype;
};

// Whether an export may touch widgets now: a QApplication exists and this is its thread. When
// not, says so on stderr, naming the export.
bool CanShowDialogs(const char* exportName);

} // namespace obsidra::entry
