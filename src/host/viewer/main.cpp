// obsidra-viewer [FILE] [--screenshot FILE.png] [--dump-tree]: the viewer application.
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <iostream>

#include "commands.h"
#include "host/view/scene_view_widget.h"
#include "host/viewer/main_window.h"
#include "host/viewer/scene_input_handler.h"

namespace {

using obsidra::host::viewer::MainWindow;

// The sample building the viewer opens without a file: installed beside the program's share
// folder, else in the source tree it was built from.
QString BundledBuilding() {
    const QString name = "IfcOpenHouse_IFC4.ifc";
    const QString installed =
        QCoreApplication::applicationDirPath() + "/../share/obsidra/examples/" + name;
    if (QFileInfo::exists(installed)) return installed;
    return QStringLiteral(OBSIDRA_EXAMPLES "/") + name;
}

// Once the file is open: the tree, the picture, or both, then the exit code.
int RunHeadless(MainWindow& window, const QString& screenshot, bool dumpTree) {
    if (dumpTree) obsidra::tools::PrintSegmentTree(window.SceneSegment(), 1 << 30, std::cout);
    if (screenshot.isEmpty()) return 0;
    // The view has its size only once the window is shown and laid out: fit again then.
    window.show();
    QCoreApplication::processEvents();
    window.View()->FitAll();
    const QImage image = window.View()->Snapshot();
    if (image.isNull() || !image.save(screenshot)) {
        std::cerr << "obsidra-viewer: cannot write " << screenshot.toStdString() << "\n";
        return 1;
    }
    std::cerr << "obsidra-viewer: wrote " << QFileInfo(screenshot).absoluteFilePath().toStdString()
              << "\n";
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName("Obsidra");
    QCoreApplication::setApplicationName("obsidra-viewer");

    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Shows a scene file and opens the inspector's dialogs over it.");
    parser.addHelpOption();
    parser.addPositionalArgument("FILE", "a metafile (.hmf), an IFC building (.ifc) or any mesh "
                                         "file assimp reads; the bundled building without one");
    const QCommandLineOption screenshot("screenshot",
                                        "open the file, draw it once into FILE.png "
                                        "and exit",
                                        "FILE.png");
    const QCommandLineOption dumpTree("dump-tree",
                                      "open the file, print its segment tree and exit");
    parser.addOption(screenshot);
    parser.addOption(dumpTree);
    parser.process(app);

    obsidra::host::viewer::RegisterSceneInputHandlers();
    const QString file = parser.positionalArguments().isEmpty() ? BundledBuilding()
                                                                : parser.positionalArguments()[0];
    const bool headless = parser.isSet(screenshot) || parser.isSet(dumpTree);
    MainWindow window(!headless);
    if (headless) {
        QObject::connect(&window, &MainWindow::LoadFinished, &app, [&](bool opened) {
            app.exit(opened ? RunHeadless(window, parser.value(screenshot), parser.isSet(dumpTree))
                            : 1);
        });
    } else {
        window.show();
    }
    window.OpenFile(file);
    return app.exec();
}
