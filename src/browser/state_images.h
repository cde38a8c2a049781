#pragma once

#include <QIcon>
#include <vector>

class TreeGraphItem;

namespace obsidra::browser {

// The pictures of the browser tree's state images (bitmap 1563): one per kind of node, so that
// segments, groups, geometry, includes, styles, references and pages look different.
enum StateImage : int {
    kNoImage = 0,
    kSegmentImage,
    kGroupImage,
    kGeometryImage,
    kIncludeImage,
    kStyleImage,
    kReferenceImage,
    kPageImage,
    kAttributeImage,
    kDefinitionImage,
    kStaticTreeImage,
    kStateImageCount
};

// 16 by 16 pictures, indexed by StateImage (the first is empty).
std::vector<QIcon> MakeStateImages();

// Which picture a node of the segment tree gets, from its label, key and place.
int StateImageOf(const TreeGraphItem& node);

} // namespace obsidra::browser
