#include "entry/module_state_guard.h"

#include <QApplication>
#include <QThread>
#include <clocale>
#include <cstdio>

static void RegisterModuleResources() {
    // Once per process: registration is reference-counted, and the module's resources stay
    // until it is unloaded.
    static const bool registered = [] {
        Q_INIT_RESOURCE(obsidra_module);
        return true;
    }();
    (void)registered;
}

namespace obsidra::entry {

ModuleStateGuard::ModuleStateGuard() {
    if (const char* current = std::setlocale(LC_CTYPE, nullptr)) m_hostCtype = current;
    if (!std::setlocale(LC_CTYPE, "C.UTF-8")) std::setlocale(LC_CTYPE, "");
    RegisterModuleResources();
}

ModuleStateGuard::~ModuleStateGuard() {
    if (!m_hostCtype.empty()) std::setlocale(LC_CTYPE, m_hostCtype.c_str());
}

bool CanShowDialogs(const char* exportName) {
    auto* app = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!app) {
        std::fprintf(stderr, "%s: the host has no QApplication; nothing is shown\n", exportName);
        return false;
    }
    if (QThread::currentThread() != app->thread()) {
        std::fprintf(stderr, "%s: called outside the QApplication's thread; nothing is shown\n",
                     exportName);
        return false;
    }
    return true;
}

} // namespace obsidra::entry
