// The side-by-side work on OpenSceneGraph: osg::Group per segment, osg::Geometry per shell,
// NodeVisitors for walks and searches, the cached getBound() for bounds.
#include <osg/Geometry>
#include <osg/Group>
#include <osg/MatrixTransform>
#include <osg/NodeVisitor>
#include <osg/PrimitiveSet>
#include <string>
#include <vector>

#include "peer_harness.h"

namespace {

using peers::Shape;

const GLuint kFaces[] = {0, 1, 2};

struct Builder {
    osg::ref_ptr<osg::Group> root;
    osg::Group* movedLeaf = nullptr;
    std::vector<osg::Group*> open;

    void Open(const char* name, int depth) {
        auto* group = new osg::Group;
        group->setName(name);
        if (depth == 0)
            root = group;
        else
            open.back()->addChild(group);
        open.push_back(group);
    }
    void Shell(const float* points, long leaf) {
        auto* vertices = new osg::Vec3Array(3);
        for (int i = 0; i < 3; ++i)
            (*vertices)[i].set(points[3 * i], points[3 * i + 1], points[3 * i + 2]);
        auto* geometry = new osg::Geometry;
        geometry->setVertexArray(vertices);
        geometry->addPrimitiveSet(new osg::DrawElementsUInt(GL_TRIANGLES, 3, kFaces));
        open.back()->addChild(geometry);
        if (leaf == peers::kMovedLeaf) movedLeaf = open.back();
    }
    void Close() { open.pop_back(); }
};

// Transforms are placement, not segments: they are walked through without being counted.
class WalkVisitor : public osg::NodeVisitor {
public:
    WalkVisitor() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
    void apply(osg::Group& group) override {
        ++segments;
        traverse(group);
    }
    void apply(osg::Transform& transform) override { traverse(transform); }
    void apply(osg::Geometry&) override { ++shells; }
    long segments = 0, shells = 0;
};

class NameVisitor : public osg::NodeVisitor {
public:
    NameVisitor() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
    void apply(osg::Group& group) override {
        if (peers::NameMatches(group.getName().c_str())) found.push_back(&group);
        traverse(group);
    }
    void apply(osg::Transform& transform) override { traverse(transform); }
    std::vector<osg::Group*> found;
};

class ShellVisitor : public osg::NodeVisitor {
public:
    ShellVisitor() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
    void apply(osg::Geometry&) override { ++shells; }
    long shells = 0;
};

// getBound() is a sphere; the box printed is the sphere's, which must hold the others' box.
void ReportSphere(const char* what, const osg::BoundingSphere& sphere) {
    const osg::Vec3 c = sphere.center();
    const float r = sphere.radius();
    const float min[3] = {c.x() - r, c.y() - r, c.z() - r};
    const float max[3] = {c.x() + r, c.y() + r, c.z() + r};
    peers::ReportBox(what, min, max);
}

} // namespace

int main(int argc, char** argv) {
    const Shape shape = peers::ParseShape(argc, argv);
    const long residentBefore = peers::ResidentBytes();
    Builder builder;
    peers::ReportTime("build", peers::TimeOnce([&] { peers::BuildScene(shape, builder); }));
    peers::ReportMemory(shape, residentBefore);
    osg::Group* root = builder.root.get();

    osg::BoundingSphere sphere;
    peers::ReportTime("bounds", peers::TimeOnce([&] { sphere = root->getBound(); }));
    ReportSphere("bounds_sphere", sphere);

    long segments = 0, shells = 0;
    peers::ReportTime("walk", peers::TimeMedian([&](int) {
                          WalkVisitor walk;
                          root->accept(walk);
                          segments = walk.segments;
                          shells = walk.shells;
                      }));
    peers::ReportAnswer("walk_segments", segments - 1); // below the root
    peers::ReportAnswer("walk_shells", shells);

    long matches = 0;
    peers::ReportTime("search", peers::TimeMedian([&](int) {
                          NameVisitor search;
                          root->accept(search);
                          matches = static_cast<long>(search.found.size());
                      }));
    peers::ReportAnswer("search_matches", matches);

    long shellCount = 0;
    peers::ReportTime("shells", peers::TimeMedian([&](int) {
                          ShellVisitor count;
                          root->accept(count);
                          shellCount = count.shells;
                      }));
    peers::ReportAnswer("shells", shellCount);

    osg::MatrixTransform* transform = nullptr;
    peers::ReportTime("move_bounds", peers::TimeMedian([&](int run) {
                          if (!transform) {
                              transform = new osg::MatrixTransform;
                              osg::Node* shell = builder.movedLeaf->getChild(0);
                              transform->addChild(shell);
                              builder.movedLeaf->replaceChild(shell, transform);
                          }
                          transform->setMatrix(
                              osg::Matrix::translate(0, 0, peers::MovedLeafZ(run)));
                          sphere = root->getBound();
                      }));
    ReportSphere("moved_bounds_sphere", sphere);

    const unsigned children = root->getNumChildren();
    peers::ReportTime("delete_half", peers::TimeOnce([&] {
                          root->removeChildren(children / 2, children - children / 2);
                      }));
    WalkVisitor walk;
    root->accept(walk);
    peers::ReportAnswer("segments_left", walk.segments - 1);
    return 0;
}
