// The component viewer's context menu in the running application: a right-click on a row of
// the control tree, the item picked from the menu that shows, and the picture checked.
#include <QAbstractItemModel>
#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QPainter>
#include <QSignalSpy>
#include <QStatusBar>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <algorithm>
#include <gtest/gtest.h>

#include "host/view/scene_view_widget.h"
#include "host/viewer/main_window.h"

namespace obsidra::host::viewer {
namespace {

QWidget* VisibleTopLevel(const QByteArray& className) {
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->isVisible() &&
            QByteArray(widget->metaObject()->className()).endsWith(className))
            return widget;
    return nullptr;
}

QModelIndex RowOf(QTreeView& tree, const QString& label) {
    const QModelIndexList found =
        tree.model()->match(tree.model()->index(0, 0), Qt::DisplayRole, label, 1,
                            Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? QModelIndex() : found.front();
}

Qt::CheckState Box(const QModelIndex& row) {
    return row.data(Qt::CheckStateRole).value<Qt::CheckState>();
}

// Right-clicks the row and clicks the menu item with that text in the menu that shows.
// Returns whether the menu showed with the item enabled.
bool ChooseFromMenu(QTreeView& tree, const QModelIndex& row, const QString& item) {
    tree.scrollTo(row);
    bool chosen = false;
    // The menu runs its own event loop: it is found and clicked from inside it.
    QTimer::singleShot(0, &tree, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu) return;
        for (QAction* action : menu->actions())
            if (action->text() == item && action->isEnabled()) {
                QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
                chosen = true;
            }
        if (!chosen) menu->close();
    });
    // Through the window system, as a person's click comes, so that it makes a context menu.
    QWidget* window = tree.window();
    const QPoint at = tree.viewport()->mapTo(window, tree.visualRect(row).center());
    QTest::mouseClick(window->windowHandle(), Qt::RightButton, {}, at);
    QApplication::processEvents();
    return chosen;
}

// How many of the picture's pixels pass the test (x, y).
template <class Test>
int CountPixels(const QImage& picture, Test test) {
    int count = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            count += test(x, y) ? 1 : 0;
    return count;
}

int Changed(const QImage& a, const QImage& b) {
    return CountPixels(a, [&](int x, int y) { return a.pixel(x, y) != b.pixel(x, y); });
}

bool Grey(QRgb pixel) {
    const auto [low, high] = std::minmax({qRed(pixel), qGreen(pixel), qBlue(pixel)});
    return high - low < 24;
}

// Of the pixels where shown differs from hidden (a part's own), the share picture keeps.
double ShareKept(const QImage& shown, const QImage& hidden, const QImage& picture) {
    const auto part = [&](int x, int y) { return shown.pixel(x, y) != hidden.pixel(x, y); };
    const int kept = CountPixels(shown, [&](int x, int y) {
        return part(x, y) && picture.pixel(x, y) == shown.pixel(x, y);
    });
    return double(kept) / std::max(1, CountPixels(shown, part));
}

void ClickBox(QTreeView& tree, const QModelIndex& row) {
    QStyleOptionViewItem option;
    option.initFrom(&tree);
    option.rect = tree.visualRect(row);
    option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
    option.checkState = Box(row);
    option.text = row.data().toString();
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                      tree.style()
                          ->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &tree)
                          .center());
}

// For the documentation (OBSIDRA_VIEWER_SHOTS names a folder): the window, the viewer beside it.
void SaveShot(QMainWindow& window, QWidget& dialog, const QString& path) {
    for (auto* status : window.statusBar()->findChildren<QLabel*>())
        status->clear(); // the file's path on this machine
    const QPixmap left = window.grab(), right = dialog.grab();
    QPixmap shot(left.width() + right.width() + 8, std::max(left.height(), right.height()));
    shot.fill(QColor(208, 208, 208));
    QPainter painter(&shot);
    painter.drawPixmap(0, 0, left);
    painter.drawPixmap(left.width() + 8, 0, right);
    painter.end();
    shot.save(path);
}

// "Isolate" on the site takes the house away and keeps the site's pixels, "Show all" brings
// the picture back, "X-ray" draws the rest in grey; the check boxes follow.
TEST(ViewerIsolate, TheContextMenuIsolatesXRaysAndShowsAll) {
    MainWindow window;
    window.show();
    QSignalSpy finished(&window, &MainWindow::LoadFinished);
    window.OpenFile(OBSIDRA_TEST_DATA "/IfcOpenHouse_IFC4.ifc");
    ASSERT_TRUE(finished.wait(20000));
    if (!window.View()->HasRenderer()) GTEST_SKIP() << "no OpenGL 3.3 core context here";
    for (QAction* action : window.findChildren<QAction*>())
        if (action->text() == "Component Viewer") action->trigger();
    QWidget* viewer = VisibleTopLevel("OrnViewer");
    ASSERT_TRUE(viewer);
    auto* tree = viewer->findChild<QTreeView*>();
    tree->expandToDepth(2);
    const QModelIndex site = RowOf(*tree, QStringLiteral("其他"));
    ASSERT_TRUE(site.isValid());
    const QModelIndex root = tree->model()->index(0, 0);
    tree->setCurrentIndex(site);
    const QImage whole = window.View()->Snapshot();
    const int many = whole.width() * whole.height() / 50;
    // The site's own pixels: where unticking it alone changes the picture.
    ClickBox(*tree, site);
    const QImage noSite = window.View()->Snapshot();
    ClickBox(*tree, site);

    ASSERT_TRUE(ChooseFromMenu(*tree, site, "Isolate"));
    const QImage isolated = window.View()->Snapshot();
    EXPECT_GT(Changed(whole, isolated), many) << "the house is gone";
    EXPECT_GT(ShareKept(whole, noSite, isolated), 0.99) << "the site stays";
    EXPECT_EQ(Box(site), Qt::Checked);
    EXPECT_EQ(Box(RowOf(*tree, QStringLiteral("建筑"))), Qt::Unchecked);
    EXPECT_EQ(Box(root), Qt::PartiallyChecked);
    if (!qEnvironmentVariableIsEmpty("OBSIDRA_VIEWER_SHOTS"))
        SaveShot(window, *viewer,
                 qEnvironmentVariable("OBSIDRA_VIEWER_SHOTS") + "/viewer-isolate.png");

    ASSERT_TRUE(ChooseFromMenu(*tree, site, "Show all"));
    EXPECT_EQ(Changed(whole, window.View()->Snapshot()), 0) << "all back";
    EXPECT_EQ(Box(root), Qt::Checked);

    ASSERT_TRUE(ChooseFromMenu(*tree, site, "X-ray"));
    const QImage xRay = window.View()->Snapshot();
    // The rest of the building where it stood against the bare background.
    const QRgb background = isolated.pixel(0, 0);
    const auto rest = [&](int x, int y) {
        return isolated.pixel(x, y) == background && whole.pixel(x, y) != background;
    };
    const int restPixels = CountPixels(whole, rest);
    EXPECT_GT(restPixels, many / 4) << "the house against the sky";
    EXPECT_GT(CountPixels(whole,
                          [&](int x, int y) {
                              const QRgb pixel = xRay.pixel(x, y);
                              return rest(x, y) && pixel != background && Grey(pixel);
                          }),
              restPixels * 9 / 10)
        << "drawn see-through grey";
    EXPECT_GT(ShareKept(whole, noSite, xRay), 0.9) << "the site as it was";
    EXPECT_EQ(Box(root), Qt::Checked) << "x-ray leaves the boxes";
    ASSERT_TRUE(ChooseFromMenu(*tree, site, "Show all"));
    EXPECT_EQ(Changed(whole, window.View()->Snapshot()), 0);
}

} // namespace
} // namespace obsidra::host::viewer
