// The main of every widget test: one QApplication for the whole run, on the offscreen platform
// unless the environment names another (the OpenGL tests run under a virtual X server).
#include <QApplication>
#include <gtest/gtest.h>

// Qt's platform and font libraries keep caches for the life of the process that LeakSanitizer
// would otherwise report at exit; none of them is ours.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n"
           "leak:libQt6Gui\n"
           "leak:libQt6Core\n"
           "leak:libdbus\n";
}

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
