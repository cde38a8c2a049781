#pragma once

#include <obsidra/hc.h>

// The model a view shows: one segment, below "/include library", that the host fills with its
// scene. Views include it; it belongs to no view.
class HBaseModel {
public:
    HBaseModel();
    virtual ~HBaseModel();
    HBaseModel(const HBaseModel&) = delete;
    HBaseModel& operator=(const HBaseModel&) = delete;

    HC_KEY GetModelKey() const { return m_modelKey; }

private:
    HC_KEY m_modelKey;
};
