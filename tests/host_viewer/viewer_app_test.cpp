// The application under a virtual X server: files opened as a user opens them, and the
// module's dialogs from the Tools menu. With OBSIDRA_VIEWER_SHOTS set to a folder, the window
// and each dialog are also saved there as PNGs, for the documentation.
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialog>
#include <QDropEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QUrl>
#include <gtest/gtest.h>

#include <obsidra/hc.h>

#include "host/view/scene_view_widget.h"
#include "host/viewer/main_window.h"
#include "host_viewer/faces.h"

namespace obsidra::host::viewer {
namespace {

const QString kHouse = OBSIDRA_TEST_DATA "/IfcOpenHouse_IFC4.ifc";
const QString kSpider = OBSIDRA_TEST_DATA "/Spider_binary.stl";
const QString kLargeBuilding = OBSIDRA_IFC_SAMPLES "/Tekla_Carwash_MiniProject_IFC2x3.ifc";

// The visible top-level widget of a class, named without its namespace; or null.
QWidget* TopLevel(const char* className) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        const QByteArray name = widget->metaObject()->className();
        if (widget->isVisible() &&
            (name == className || name.endsWith(QByteArray("::") + className)))
            return widget;
    }
    return nullptr;
}

QAction* Action(QWidget& window, const QString& text) {
    for (QAction* action : window.findChildren<QAction*>())
        if (action->text() == text) return action;
    ADD_FAILURE() << "no action " << text.toStdString();
    return nullptr;
}

// The window with a dialog over its right half, for the documentation.
void Shoot(QWidget& window, QWidget* dialog, const char* name) {
    const QString folder = qEnvironmentVariable("OBSIDRA_VIEWER_SHOTS");
    if (folder.isEmpty()) return;
    const QPixmap under = window.grab();
    const QPixmap over = dialog ? dialog->grab() : QPixmap();
    const QPoint at(under.width() - over.width() / 2, 48);
    QPixmap shot(std::max(under.width(), at.x() + over.width() + 8),
                 std::max(under.height(), at.y() + over.height() + 8));
    shot.fill(QColor(208, 208, 208));
    QPainter painter(&shot);
    painter.drawPixmap(0, 0, under);
    if (dialog) {
        painter.fillRect(QRect(at + QPoint(5, 5), over.size()), QColor(0, 0, 0, 70));
        painter.drawPixmap(at, over);
        painter.setPen(Qt::gray);
        painter.drawRect(QRect(at, over.size()).adjusted(-1, -1, 0, 0));
    }
    shot.save(folder + "/" + name + ".png");
}

class ViewerAppTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_window.show();
        ASSERT_TRUE(m_window.Module().IsLoaded());
    }
    void TearDown() override {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (qobject_cast<QMessageBox*>(widget)) widget->close();
    }

    // Opens the file as the user would and waits for the end of the load.
    QList<QVariant> Open(const QString& path) {
        QSignalSpy finished(&m_window, &MainWindow::LoadFinished);
        m_window.OpenFile(path);
        EXPECT_TRUE(finished.wait(20000)) << path.toStdString();
        return finished.isEmpty() ? QList<QVariant>{false, QString()} : finished.front();
    }

    MainWindow m_window;
};

TEST_F(ViewerAppTest, OpensABuildingThenADroppedMeshInItsPlace) {
    ASSERT_TRUE(Open(kHouse)[0].toBool());
    ASSERT_TRUE(m_window.Building());
    const HC_KEY house = m_window.SceneSegment();
    EXPECT_EQ(m_window.Building()->Building().Segment(), house);
    EXPECT_EQ(m_window.Building()->Building().Components().size(), 41u);
    EXPECT_EQ(QSettings().value("recentFiles").toStringList().value(0), kHouse);

    QSignalSpy finished(&m_window, &MainWindow::LoadFinished);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(kSpider)});
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&m_window, &enter);
    ASSERT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&m_window, &drop);
    ASSERT_TRUE(finished.wait(20000));
    EXPECT_TRUE(finished.front()[0].toBool());
    EXPECT_FALSE(m_window.Building());
    EXPECT_EQ(Faces(m_window.SceneSegment()), 1368u);
    EXPECT_EQ(HC_Show_Existence_By_Key(house, "self"), 0) << "the building is still in the scene";
}

TEST_F(ViewerAppTest, ABadFileIsToldAndTheOpenSceneStays) {
    ASSERT_TRUE(Open(kHouse)[0].toBool());
    const HC_KEY house = m_window.SceneSegment();
    const std::uint32_t faces = Faces(house);
    QTemporaryDir dir;
    const QString garbage = dir.filePath("garbage.ply");
    QFile file(garbage);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not a mesh\n");
    file.close();

    const QList<QVariant> result = Open(garbage);
    EXPECT_FALSE(result[0].toBool());
    EXPECT_TRUE(result[1].toString().startsWith(garbage + ": "))
        << result[1].toString().toStdString();
    auto* box = qobject_cast<QMessageBox*>(TopLevel("QMessageBox"));
    ASSERT_TRUE(box);
    EXPECT_EQ(box->text(), result[1].toString());
    EXPECT_EQ(m_window.SceneSegment(), house);
    EXPECT_EQ(Faces(house), faces);
    EXPECT_TRUE(m_window.Building());
}

TEST_F(ViewerAppTest, CancelStopsALongLoadAndKeepsTheScene) {
    ASSERT_TRUE(Open(kSpider)[0].toBool());
    const HC_KEY spider = m_window.SceneSegment();
    QSignalSpy finished(&m_window, &MainWindow::LoadFinished);
    m_window.OpenFile(kLargeBuilding);
    ASSERT_TRUE(m_window.IsLoading());
    m_window.CancelLoading();
    ASSERT_TRUE(finished.wait(20000));
    EXPECT_FALSE(finished.front()[0].toBool());
    EXPECT_TRUE(finished.front()[1].toString().endsWith("was cancelled"));
    EXPECT_EQ(m_window.SceneSegment(), spider);
    EXPECT_EQ(Faces(spider), 1368u);
}

TEST_F(ViewerAppTest, TheToolsMenuOpensTheModulesDialogs) {
    ASSERT_TRUE(Open(kHouse)[0].toBool());
    Shoot(m_window, nullptr, "viewer");

    Action(m_window, "Segment Browser")->trigger();
    QWidget* browser = TopLevel("CSegmentBrowserDlg");
    ASSERT_TRUE(browser);
    if (auto* tree = browser->findChild<QTreeView*>()) {
        // Children are made as their parents expand: one level at a time.
        for (int depth = 0; depth < 3; ++depth) {
            tree->expandToDepth(depth);
            QApplication::processEvents();
        }
    }
    Shoot(m_window, browser, "viewer-segment-browser");

    Action(m_window, "Component Viewer")->trigger();
    QWidget* components = TopLevel("OrnViewer");
    ASSERT_TRUE(components);
    // A pick in the view selects the picked shell's component and marks it in the viewer.
    const ifc::IfcComponent& picked = m_window.Building()->Building().Components().back();
    emit m_window.View()->Picked(picked.shells.front(), {});
    EXPECT_EQ(m_window.Building()->Selection(), std::vector<std::uint64_t>{picked.handle});
    if (auto* tree = components->findChild<QTreeView*>()) tree->expandToDepth(2);
    Shoot(m_window, components, "viewer-component-viewer");

    bool statisticsShown = false;
    QTimer::singleShot(200, [&] {
        QWidget* statistics = TopLevel("CUxTongJiDialog");
        statisticsShown = statistics != nullptr;
        Shoot(m_window, statistics, "viewer-statistics");
        if (statistics) statistics->close();
    });
    Action(m_window, "Statistics")->trigger();
    EXPECT_TRUE(statisticsShown);

    // A new file closes the dialogs that looked at the old one.
    ASSERT_TRUE(Open(kSpider)[0].toBool());
    EXPECT_FALSE(TopLevel("CSegmentBrowserDlg"));
    EXPECT_FALSE(TopLevel("OrnViewer"));
    EXPECT_FALSE(Action(m_window, "Component Viewer")->isEnabled());
}

// The row of a tree showing that text, or an invalid index.
QModelIndex Row(QTreeView& tree, const QString& text) {
    const QModelIndexList found = tree.model()->match(
        tree.model()->index(0, 0), Qt::DisplayRole, text, 1, Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? QModelIndex() : found.front();
}

// Clicks the check box of a row, as a user would.
void ClickBox(QTreeView& tree, const QModelIndex& row) {
    tree.scrollTo(row);
    QStyleOptionViewItem option;
    option.initFrom(&tree);
    option.rect = tree.visualRect(row);
    option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
    option.checkState = row.data(Qt::CheckStateRole).value<Qt::CheckState>();
    option.text = row.data().toString();
    const QRect box =
        tree.style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &tree);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, box.center());
}

QWidget* Control(QWidget& dialog, int id) {
    for (QWidget* widget : dialog.findChildren<QWidget*>())
        if (widget->property("controlId").toInt() == id) return widget;
    ADD_FAILURE() << "no control " << id;
    return nullptr;
}

// How many pixels of a picture differ from another's.
int Changed(const QImage& a, const QImage& b) {
    int changed = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (a.pixel(x, y) != b.pixel(x, y)) ++changed;
    return changed;
}

// The dialogs edit what the view draws: selecting the site in the component viewer marks it,
// unticking it takes its pixels away and ticking it brings them back; a replace in the segment
// browser's attribute search (diffuse colours made specular ones) shows at once.
TEST_F(ViewerAppTest, TheDialogsChangeThePicture) {
    ASSERT_TRUE(Open(kHouse)[0].toBool());
    if (!m_window.View()->HasRenderer()) GTEST_SKIP() << "no OpenGL 3.3 core context here";
    const QImage plain = m_window.View()->Snapshot();
    const int many = plain.width() * plain.height() / 50;

    Action(m_window, "Component Viewer")->trigger();
    QWidget* components = TopLevel("OrnViewer");
    ASSERT_TRUE(components);
    auto* controlTree = components->findChild<QTreeView*>();
    controlTree->expandToDepth(2);
    controlTree->setCurrentIndex(Row(*controlTree, QStringLiteral("其他")));
    const QImage whole = m_window.View()->Snapshot();
    EXPECT_GT(Changed(plain, whole), many) << "the selected node's geometry is marked";
    ClickBox(*controlTree, Row(*controlTree, QStringLiteral("其他")));
    EXPECT_GT(Changed(whole, m_window.View()->Snapshot()), many) << "the site is hidden";
    ClickBox(*controlTree, Row(*controlTree, QStringLiteral("其他")));
    EXPECT_EQ(Changed(whole, m_window.View()->Snapshot()), 0) << "and shown again";
    if (!qEnvironmentVariableIsEmpty("OBSIDRA_VIEWER_SHOTS")) {
        // What "X-ray" on the doors draws: the rest of the building see-through.
        controlTree->setCurrentIndex({});
        for (const ifc::IfcComponent& component : m_window.Building()->Building().Components())
            for (HC_KEY shell : component.shells)
                m_window.View()->SetXRay(shell, component.category.minorCategory != "门");
        Shoot(m_window, nullptr, "viewer-xray");
        m_window.View()->ClearXRay();
    }
    components->close();

    Action(m_window, "Segment Browser")->trigger();
    QWidget* browser = TopLevel("CSegmentBrowserDlg");
    ASSERT_TRUE(browser);
    static_cast<QComboBox*>(Control(*browser, 1554))->setCurrentText("Attribute");
    static_cast<QLineEdit*>(Control(*browser, 1320))->setText("diffuse$$specular");
    QTest::mouseClick(static_cast<QPushButton*>(Control(*browser, 1232)), Qt::LeftButton);
    EXPECT_GT(Changed(whole, m_window.View()->Snapshot()), 1000) << "the house's walls and roof";
}

} // namespace
} // namespace obsidra::host::viewer
