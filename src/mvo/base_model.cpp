#include "mvo/base_model.h"

HBaseModel::HBaseModel() {
    // A nameless segment of its own, so that several models never share one.
    HC_Open_Segment("/include library");
    m_modelKey = HC_Create_Segment("");
    HC_Close_Segment();
}

HBaseModel::~HBaseModel() {
    if (HC_Show_Existence_By_Key(m_modelKey, "self")) HC_Delete_By_Key(m_modelKey);
}
