// obsidra-browse: the segment browser over a scene file, until a viewer hosts it.
//
// --open A/B/C opens the rows labelled A, B and C from the top node down and selects the last
// (repeatable); --filter TEXT types TEXT into the name filter box; --screenshot writes a picture
// of the dialog instead of waiting for the user.
#include <QApplication>
#include <QLineEdit>
#include <QPixmap>
#include <QStringList>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "browser/segment_browser_dlg.h"
#include "scene_session.h"

namespace {

int Usage() {
    std::cerr << "usage: obsidra-browse FILE [--open LABEL/LABEL/...]... [--filter TEXT]"
                 " [--screenshot OUT.png]\n";
    return 2;
}

// Opens the rows along the path of labels as a click on each expander would, and selects the
// last one found.
void OpenPath(CSegTreeCtrl& tree, const QString& path) {
    QTreeWidgetItem* item = tree.topLevelItem(0);
    if (!item) return;
    for (const QString& label : path.split('/', Qt::SkipEmptyParts)) {
        tree.expandItem(item);
        QTreeWidgetItem* next = nullptr;
        for (int i = 0; i < item->childCount() && !next; ++i)
            if (item->child(i)->text(0) == label) next = item->child(i);
        if (!next) {
            std::cerr << "obsidra-browse: no row " << label.toStdString() << "\n";
            break;
        }
        item = next;
    }
    tree.expandItem(item);
    tree.setCurrentItem(item);
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    std::string file;
    std::string screenshot;
    std::vector<QString> paths;
    QString filter;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--screenshot") && i + 1 < argc)
            screenshot = argv[++i];
        else if (!std::strcmp(argv[i], "--filter") && i + 1 < argc)
            filter = QString::fromUtf8(argv[++i]);
        else if (!std::strcmp(argv[i], "--open") && i + 1 < argc)
            paths.push_back(QString::fromUtf8(argv[++i]));
        else if (file.empty())
            file = argv[i];
        else
            return Usage();
    }
    if (file.empty()) return Usage();

    obsidra::tools::SceneSession session;
    if (!session.Load(file, std::cerr)) return 1;
    CSegmentBrowserDlg dialog(nullptr, &session.View());
    dialog.show();
    for (const QString& path : paths)
        OpenPath(*dialog.Tree(), path);
    if (!filter.isEmpty()) {
        static_cast<QLineEdit*>(dialog.Control(CSegmentBrowserDlg::kNameFilterId))->setText(filter);
        dialog.ApplyNameFilter();
    }
    if (screenshot.empty()) return app.exec();

    QApplication::processEvents();
    if (!dialog.grab().save(QString::fromStdString(screenshot))) {
        std::cerr << "obsidra-browse: cannot write " << screenshot << "\n";
        return 1;
    }
    return 0;
}
