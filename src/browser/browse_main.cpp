// obsidra-browse: the segment browser over a scene file, until a viewer hosts it. With
// --screenshot it opens the first branch three levels down, selects the last one opened and
// writes a picture of the dialog instead of waiting for the user.
#include <QApplication>
#include <QPixmap>
#include <cstring>
#include <iostream>
#include <string>

#include "browser/segment_browser_dlg.h"
#include "scene_session.h"
#include "treegraph/qt/windows_tree_graph_item.h"

namespace {

int Usage() {
    std::cerr << "usage: obsidra-browse FILE [--screenshot OUT.png]\n";
    return 2;
}

// The first child of item that promises children of its own, expanded.
QTreeWidgetItem* ExpandFirstBranch(CSegTreeCtrl& tree, QTreeWidgetItem* item) {
    tree.expandItem(item);
    for (int i = 0; i < item->childCount(); ++i)
        if (item->child(i)->childIndicatorPolicy() == QTreeWidgetItem::ShowIndicator &&
            WindowsTreeGraphItem::FromHandle(item->child(i))->GetKey() != 0)
            return item->child(i);
    return nullptr;
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    std::string file;
    std::string screenshot;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--screenshot") && i + 1 < argc)
            screenshot = argv[++i];
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
    if (screenshot.empty()) return app.exec();

    CSegTreeCtrl& tree = *dialog.Tree();
    QTreeWidgetItem* branch = tree.topLevelItem(0);
    for (int level = 0; level < 3 && branch; ++level) {
        tree.setCurrentItem(branch);
        branch = ExpandFirstBranch(tree, branch);
    }
    QApplication::processEvents();
    if (!dialog.grab().save(QString::fromStdString(screenshot))) {
        std::cerr << "obsidra-browse: cannot write " << screenshot << "\n";
        return 1;
    }
    return 0;
}
