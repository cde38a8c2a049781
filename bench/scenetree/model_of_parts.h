// The scene the segment tree and browser benchmarks share: a fresh database whose model segment
// holds `parts` subsegments "part 0", "part 1", ..., each with one triangle shell.
#pragma once

#include <cstdio>
#include <memory>

#include <obsidra/hc.h>

#include "mvo/base_model.h"
#include "mvo/base_view.h"

struct ModelOfParts {
    explicit ModelOfParts(int parts) {
        HC_Reset_System();
        model = std::make_unique<HBaseModel>();
        view = std::make_unique<HBaseView>(model.get());
        const HC_POINT points[] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
        const int faces[] = {3, 0, 1, 2};
        HC_Open_Segment_By_Key(model->GetModelKey());
        char name[32];
        for (int i = 0; i < parts; ++i) {
            std::snprintf(name, sizeof name, "part %d", i);
            HC_Open_Segment(name);
            HC_Insert_Shell(3, points, 4, faces);
            HC_Close_Segment();
        }
        HC_Close_Segment();
    }
    std::unique_ptr<HBaseModel> model;
    std::unique_ptr<HBaseView> view;
};
