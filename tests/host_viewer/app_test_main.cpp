// The main of the application's tests: a QApplication, and recent files kept in a settings
// folder of the run's own rather than the user's.
#include <QApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", settings.path().toUtf8());
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName("ObsidraTest");
    QCoreApplication::setApplicationName("viewer-app-test");
    return RUN_ALL_TESTS();
}
