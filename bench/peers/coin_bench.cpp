// The side-by-side work on Coin3D: SoSeparator per segment, SoCoordinate3 + SoIndexedFaceSet per
// shell, walks over the child lists for searches, SoGetBoundingBoxAction for bounds.
#include <Inventor/SbViewportRegion.h>
#include <Inventor/SoDB.h>
#include <Inventor/SoPath.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/misc/SoChildList.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoTranslation.h>
#include <vector>

#include "peer_harness.h"

namespace {

using peers::Shape;

const int32_t kFaces[] = {0, 1, 2, -1};

struct Builder {
    SoSeparator* root = nullptr;
    SoSeparator* movedLeaf = nullptr;
    std::vector<SoSeparator*> open;

    void Open(const char* name, int depth) {
        auto* separator = new SoSeparator;
        separator->setName(name);
        if (depth == 0) {
            root = separator;
            root->ref();
        }
        open.push_back(separator);
    }
    void Shell(const float* points, long leaf) {
        auto* coordinates = new SoCoordinate3;
        coordinates->point.setValues(0, 3, reinterpret_cast<const float(*)[3]>(points));
        auto* faces = new SoIndexedFaceSet;
        faces->coordIndex.setValues(0, 4, kFaces);
        open.back()->addChild(coordinates);
        open.back()->addChild(faces);
        if (leaf == peers::kMovedLeaf) movedLeaf = open.back();
    }
    // A finished subtree joins its owner, so that building notifies only what is built.
    void Close() {
        SoSeparator* done = open.back();
        open.pop_back();
        if (!open.empty()) open.back()->addChild(done);
    }
};

void Walk(SoNode* root, long& segments, long& shells) {
    segments = shells = 0;
    std::vector<SoNode*> pending{root};
    while (!pending.empty()) {
        SoNode* node = pending.back();
        pending.pop_back();
        if (node->isOfType(SoSeparator::getClassTypeId())) {
            ++segments;
            SoChildList* children = node->getChildren();
            for (int i = children->getLength() - 1; i >= 0; --i)
                pending.push_back((*children)[i]);
        } else if (node->isOfType(SoIndexedFaceSet::getClassTypeId())) {
            ++shells;
        }
    }
}

// SoSearchAction with interest ALL would be the textbook way for both searches, but every path
// it returns registers itself with each group on its way, and dropping a million paths from the
// root's auditor list is quadratic (it had not finished after ten minutes). A walk over the child
// lists is Coin's fastest way and is what is measured.
template <typename Visit>
void VisitAll(SoNode* root, Visit&& visit) {
    std::vector<SoNode*> pending{root};
    while (!pending.empty()) {
        SoNode* node = pending.back();
        pending.pop_back();
        visit(node);
        if (SoChildList* children = node->getChildren())
            for (int i = children->getLength() - 1; i >= 0; --i)
                pending.push_back((*children)[i]);
    }
}

long SearchNames(SoNode* root) {
    std::vector<SoNode*> found;
    const SoType separator = SoSeparator::getClassTypeId();
    VisitAll(root, [&](SoNode* node) {
        if (node->isOfType(separator) && peers::NameMatches(node->getName().getString()))
            found.push_back(node);
    });
    return static_cast<long>(found.size());
}

long CountShells(SoNode* root) {
    long shells = 0;
    const SoType faceSet = SoIndexedFaceSet::getClassTypeId();
    VisitAll(root, [&](SoNode* node) { shells += node->isOfType(faceSet) ? 1 : 0; });
    return shells;
}

void Bounds(SoNode* root, float* min, float* max) {
    SoGetBoundingBoxAction action(SbViewportRegion(640, 480));
    action.apply(root);
    action.getBoundingBox().getBounds(min[0], min[1], min[2], max[0], max[1], max[2]);
}

} // namespace

int main(int argc, char** argv) {
    const Shape shape = peers::ParseShape(argc, argv);
    SoDB::init();
    const long residentBefore = peers::ResidentBytes();
    Builder builder;
    peers::ReportTime("build", peers::TimeOnce([&] { peers::BuildScene(shape, builder); }));
    peers::ReportMemory(shape, residentBefore);
    SoSeparator* root = builder.root;

    float min[3], max[3];
    peers::ReportTime("bounds", peers::TimeOnce([&] { Bounds(root, min, max); }));
    peers::ReportBox("bounds", min, max);

    long segments = 0, shells = 0;
    peers::ReportTime("walk", peers::TimeMedian([&](int) { Walk(root, segments, shells); }));
    peers::ReportAnswer("walk_segments", segments - 1); // below the root
    peers::ReportAnswer("walk_shells", shells);

    long matches = 0;
    // SoBase::getName() interns the name again on every call, and the name table's chains grow
    // with the number of names: one search over a million names takes minutes, so it runs once.
    peers::ReportTime("search", peers::TimeSingle([&](int) { matches = SearchNames(root); }));
    peers::ReportAnswer("search_matches", matches);

    long shellCount = 0;
    peers::ReportTime("shells", peers::TimeMedian([&](int) { shellCount = CountShells(root); }));
    peers::ReportAnswer("shells", shellCount);

    SoTranslation* translation = nullptr;
    peers::ReportTime("move_bounds", peers::TimeMedian([&](int run) {
                          if (!translation) {
                              translation = new SoTranslation;
                              builder.movedLeaf->insertChild(translation, 0);
                          }
                          translation->translation.setValue(0, 0, peers::MovedLeafZ(run));
                          Bounds(root, min, max);
                      }));
    peers::ReportBox("moved_bounds", min, max);

    const int children = root->getNumChildren();
    peers::ReportTime("delete_half", peers::TimeOnce([&] {
                          for (int i = children - 1; i >= children / 2; --i)
                              root->removeChild(i);
                      }));
    Walk(root, segments, shells);
    peers::ReportAnswer("segments_left", segments - 1);
    root->unref();
    return 0;
}
