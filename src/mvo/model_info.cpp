#include "mvo/model_info.h"

HModelInfo::HModelInfo() = default;
HModelInfo::~HModelInfo() = default;

void HModelInfo::ComputeModelInfo(HC_KEY key, int /*options*/) {
    HC_Fast_Census(key, &m_census);
}
