#include "mvo/hdb.h"

HIOManager* HDB::GetHIOManager() {
    static HIOManager manager;
    return &manager;
}
