#include "browser/state_images.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <cstring>
#include <functional>

#include "scenetree/hoops_segment_tree.h"
#include "scenetree/scene_access.h"
#include "treegraph/tree_graph_item.h"

namespace obsidra::browser {

namespace {

using obsidra::scenetree::IsAlive;
using obsidra::scenetree::IsObjectKey;
using obsidra::scenetree::KeyType;

QIcon Draw(const std::function<void(QPainter&)>& paint) {
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    paint(painter);
    return QIcon(pixmap);
}

void Segment(QPainter& p) {
    // A small cube: the scene's segments hold its drawn objects.
    const QPointF top[] = {{8, 1.5}, {14.5, 4.5}, {8, 7.5}, {1.5, 4.5}};
    const QPointF left[] = {{1.5, 4.5}, {8, 7.5}, {8, 14.5}, {1.5, 11.5}};
    const QPointF right[] = {{8, 7.5}, {14.5, 4.5}, {14.5, 11.5}, {8, 14.5}};
    p.setPen(QPen(QColor(30, 70, 140), 1));
    p.setBrush(QColor(140, 180, 240));
    p.drawPolygon(top, 4);
    p.setBrush(QColor(70, 120, 210));
    p.drawPolygon(left, 4);
    p.setBrush(QColor(45, 95, 180));
    p.drawPolygon(right, 4);
}

void Group(QPainter& p) {
    p.setPen(QPen(QColor(150, 110, 20), 1));
    p.setBrush(QColor(245, 200, 90));
    QPainterPath folder;
    folder.moveTo(1.5, 3.5);
    folder.lineTo(6, 3.5);
    folder.lineTo(7.5, 5.5);
    folder.lineTo(14.5, 5.5);
    folder.lineTo(14.5, 13.5);
    folder.lineTo(1.5, 13.5);
    folder.closeSubpath();
    p.drawPath(folder);
}

void Geometry(QPainter& p) {
    const QPointF triangle[] = {{8, 1.5}, {14.5, 14}, {1.5, 14}};
    p.setPen(QPen(QColor(20, 110, 40), 1));
    p.setBrush(QColor(90, 190, 100));
    p.drawPolygon(triangle, 3);
}

void Include(QPainter& p) {
    p.setPen(QPen(QColor(90, 40, 130), 1));
    p.setBrush(QColor(200, 170, 230));
    p.drawRect(QRectF(5.5, 3.5, 9, 9));
    p.setPen(QPen(QColor(90, 40, 130), 2));
    p.drawLine(QPointF(1, 8), QPointF(10, 8));
    p.drawLine(QPointF(7, 5), QPointF(10, 8));
    p.drawLine(QPointF(7, 11), QPointF(10, 8));
}

void Style(QPainter& p) {
    // A painter's palette: a style brings attributes in.
    p.setPen(QPen(QColor(160, 80, 10), 1));
    p.setBrush(QColor(250, 160, 60));
    p.drawEllipse(QRectF(1.5, 2.5, 13, 11));
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(200, 30, 30));
    p.drawEllipse(QRectF(4, 5, 3, 3));
    p.setBrush(QColor(30, 90, 200));
    p.drawEllipse(QRectF(9, 5, 3, 3));
    p.setBrush(QColor(30, 160, 60));
    p.drawEllipse(QRectF(6.5, 9, 3, 3));
}

void Reference(QPainter& p) {
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(QColor(0, 120, 130), 2));
    p.drawEllipse(QRectF(1.5, 4.5, 8, 7));
    p.drawEllipse(QRectF(6.5, 4.5, 8, 7));
}

void Page(QPainter& p) {
    p.setPen(QPen(QColor(90, 90, 90), 1));
    p.setBrush(QColor(225, 225, 225));
    p.drawRect(QRectF(4.5, 1.5, 9, 11));
    p.setBrush(Qt::white);
    p.drawRect(QRectF(2.5, 3.5, 9, 11));
    p.drawLine(QPointF(4.5, 7), QPointF(9.5, 7));
    p.drawLine(QPointF(4.5, 9.5), QPointF(9.5, 9.5));
    p.drawLine(QPointF(4.5, 12), QPointF(9.5, 12));
}

void Attribute(QPainter& p) {
    // A label tag: a name and its value.
    p.setPen(QPen(QColor(110, 110, 40), 1));
    p.setBrush(QColor(240, 235, 150));
    const QPointF tag[] = {{1.5, 8}, {5.5, 3.5}, {14.5, 3.5}, {14.5, 12.5}, {5.5, 12.5}};
    p.drawPolygon(tag, 5);
    p.setBrush(Qt::white);
    p.drawEllipse(QRectF(4.5, 7, 2, 2));
}

void Definition(QPainter& p) {
    const QPointF diamond[] = {{8, 1.5}, {14.5, 8}, {8, 14.5}, {1.5, 8}};
    p.setPen(QPen(QColor(150, 20, 20), 1));
    p.setBrush(QColor(230, 90, 90));
    p.drawPolygon(diamond, 4);
}

void StaticTree(QPainter& p) {
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(120, 80, 40));
    p.drawRect(QRectF(7, 11, 2, 4));
    const QPointF crown[] = {{8, 1}, {14, 11.5}, {2, 11.5}};
    p.setPen(QPen(QColor(10, 80, 30), 1));
    p.setBrush(QColor(40, 140, 70));
    p.drawPolygon(crown, 3);
}

bool LabelIs(const char* label, const char* text) {
    return label && std::strcmp(label, text) == 0;
}

bool StartsWith(const char* label, const char* prefix) {
    return label && std::strncmp(label, prefix, std::strlen(prefix)) == 0;
}

bool IsGroupLabel(const char* label) {
    using namespace obsidra::scenetree;
    for (const char* group :
         {kGeometryLabel, kDefinesLabel, kIncludesLabel, kStylesLabel, kNamedStylesLabel,
          kReferencesLabel, kGeometryRefLabel, kSegmentRefLabel})
        if (LabelIs(label, group)) return true;
    return false;
}

} // namespace

std::vector<QIcon> MakeStateImages() {
    std::vector<QIcon> images(kStateImageCount);
    images[kSegmentImage] = Draw(Segment);
    images[kGroupImage] = Draw(Group);
    images[kGeometryImage] = Draw(Geometry);
    images[kIncludeImage] = Draw(Include);
    images[kStyleImage] = Draw(Style);
    images[kReferenceImage] = Draw(Reference);
    images[kPageImage] = Draw(Page);
    images[kAttributeImage] = Draw(Attribute);
    images[kDefinitionImage] = Draw(Definition);
    images[kStaticTreeImage] = Draw(StaticTree);
    return images;
}

int StateImageOf(const TreeGraphItem& node) {
    using namespace obsidra::scenetree;
    const char* label = node.GetLabel();
    if (LabelIs(label, kStaticTreeLabel)) return kStaticTreeImage;
    if (IsGroupLabel(label)) return kGroupImage;
    if (StartsWith(label, "SEGMENTS ") || StartsWith(label, "REFERENCES ")) return kPageImage;
    const TreeGraphItem* parent = node.GetParent();
    if (!IsObjectKey(node.GetKey())) {
        // Keyless: a kind under "GEOMETRY" or "DEFINES", a definition line under a kind, or
        // an attribute line.
        const char* parentLabel = parent ? parent->GetLabel() : nullptr;
        if (LabelIs(parentLabel, kGeometryLabel) || LabelIs(parentLabel, kDefinesLabel))
            return kGroupImage;
        const TreeGraphItem* grandparent = parent ? parent->GetParent() : nullptr;
        if (grandparent && LabelIs(grandparent->GetLabel(), kDefinesLabel)) return kDefinitionImage;
        return kAttributeImage;
    }
    if (!IsAlive(node.GetKey())) return kNoImage;
    const std::string type = KeyType(node.GetKey());
    if (type == "segment") return kSegmentImage;
    if (type == "include") return kIncludeImage;
    if (type == "style" || type == "named style") return kStyleImage;
    if (type == "reference") return kReferenceImage;
    return kGeometryImage;
}

} // namespace obsidra::browser
