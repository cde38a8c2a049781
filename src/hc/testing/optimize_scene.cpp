#include "hc/testing/optimize_scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "hc/database.h"
#include "hc/geometry_data.h"

namespace hc::testing {

namespace {

using Matrix = std::array<float, 16>;

Matrix Translation(float x, float y, float z) {
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1};
}

Matrix Scale(float s) {
    return {s, 0, 0, 0, 0, s, 0, 0, 0, 0, s, 0, 0, 0, 0, 1};
}

void InsertCube(float size) {
    HC_POINT points[8];
    for (int i = 0; i < 8; ++i)
        points[i] = {i & 1 ? size : 0, i & 2 ? size : 0, i & 4 ? size : 0};
    int faces[] = {4, 0, 1, 3, 2, 4, 4, 6, 7, 5, 4, 0, 4, 5, 1,
                   4, 2, 3, 7, 6, 4, 0, 2, 6, 4, 4, 1, 5, 7, 3};
    HC_Insert_Shell(8, points, 30, faces);
}

HC_KEY InsertTriangle(float offset) {
    HC_POINT points[] = {{offset, 0, 0}, {offset + 1, 0, 0}, {offset, 1, 0}};
    int faces[] = {3, 0, 1, 2};
    return HC_Insert_Shell(3, points, 4, faces);
}

} // namespace

HC_KEY BuildOptimizeScene(const char* path, int groups) {
    HC_Open_Segment("/include library/part");
    InsertCube(0.5f);
    HC_Set_Color("faces=blue");
    HC_Set_User_Options("kind=part");
    HC_Close_Segment();

    HC_KEY root = HC_Open_Segment(path);
    HC_Set_Visibility("markers=off");
    for (int i = 0; i < groups; ++i) {
        // Every third group is nameless; the others are named after their number.
        HC_Open_Segment(i % 3 == 2 ? "" : ("group " + std::to_string(i)).c_str());
        if (i % 2) HC_Set_Color("faces=red");
        if (i % 4 == 0) HC_Set_Visibility("edges=off");
        HC_Set_User_Options(("id=" + std::to_string(i)).c_str());
        Matrix place = Translation(float(i), float(i % 3), 0);
        HC_Set_Modelling_Matrix(place.data());
        if (i % 5 == 0) HC_Include_Segment("/include library/part");
        for (int leaf = 0; leaf < 2; ++leaf) {
            HC_Open_Segment(("leaf " + std::to_string(leaf)).c_str());
            Matrix scale = Scale(1.0f + float(leaf));
            HC_Set_Modelling_Matrix(scale.data());
            // Two copies of one triangle, one of another, a cube repeated everywhere.
            InsertTriangle(0);
            InsertTriangle(0);
            HC_KEY coloured = InsertTriangle(2);
            if (leaf == 1) {
                HC_Open_Geometry(coloured);
                HC_Set_Color("faces=green");
                HC_Close_Geometry();
            }
            InsertCube(1);
            HC_POINT line[] = {{0, 0, 0}, {1, 1, 1}, {2, 0, 1}};
            HC_Insert_Polyline(3, line);
            HC_Close_Segment();
        }
        HC_Close_Segment();
    }
    HC_Close_Segment();
    return root;
}

std::vector<std::string> DrawnScene(HC_KEY key) {
    Database& db = Current();
    struct State {
        Slot slot;
        OptionList color, visibility;
        Matrix matrix;
    };
    auto enter = [&](Slot slot, State state) {
        state.slot = slot;
        if (const Attribute* a = db.LocalAttribute(slot, ContentKind::Color))
            state.color.Merge(a->options);
        if (const Attribute* a = db.LocalAttribute(slot, ContentKind::Visibility))
            state.visibility.Merge(a->options);
        const Attribute* m = db.LocalAttribute(slot, ContentKind::ModellingMatrix);
        if (m && m->numbers.size() == 16)
            MultiplyMatrices(m->numbers.data(), state.matrix.data(), state.matrix.data());
        return state;
    };
    auto pointText = [](const HC_POINT& p) {
        char text[96];
        auto clean = [](float v) { return std::fabs(v) < 5e-4f ? 0.0f : v; };
        std::snprintf(text, sizeof text, " %.3f %.3f %.3f", clean(p.x), clean(p.y), clean(p.z));
        return std::string(text);
    };
    std::vector<std::string> lines;
    std::vector<State> pending{enter(db.Resolve(key), {0, {}, {}, Scale(1)})};
    while (!pending.empty() && db.GetSegment(pending.back().slot)) {
        State state = std::move(pending.back());
        pending.pop_back();
        const Segment& segment = *db.GetSegment(state.slot);
        for (Slot c = segment.segments.first; c != kNoSlot; c = db.Next(c))
            pending.push_back(enter(c, state));
        for (Slot c = segment.links.first; c != kNoSlot; c = db.Next(c)) {
            const auto& link = static_cast<const Link&>(*db.Get(c));
            if (link.type == ContentKind::Include && db.GetSegment(db.LinkTarget(link)))
                pending.push_back(enter(db.LinkTarget(link), state));
        }
        for (Slot c = segment.geometry.first; c != kNoSlot; c = db.Next(c)) {
            State item = enter(c, state);
            const auto& geometry = static_cast<const Geometry&>(*db.Get(c));
            std::string head = std::string(TypeWord(geometry.type)) + " [" + item.color.Format() +
                               "] [" + item.visibility.Format() + "]";
            auto world = [&](int index) {
                return pointText(TransformPoint(geometry.points[index], item.matrix.data()));
            };
            if (geometry.type != ContentKind::Shell) {
                std::string line = head;
                for (size_t i = 0; i < geometry.points.size(); ++i)
                    line += world(static_cast<int>(i));
                lines.push_back(line);
                continue;
            }
            for (const FaceLoop& loop : FaceLoops(geometry.ints)) {
                std::string line = head + (loop.hole ? " hole" : "");
                for (int k = 1; k <= loop.count; ++k)
                    line += world(geometry.ints[loop.position + k]);
                lines.push_back(line);
            }
        }
    }
    std::sort(lines.begin(), lines.end());
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    return lines;
}

} // namespace hc::testing
