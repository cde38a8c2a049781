#include <cstring>

#include <obsidra/hc_check.h>

#include "hc/api_support.h"
#include "hc/invariants.h"

extern "C" {

int HC_Check_Database(char* report, int capacity) {
    const std::vector<std::string> faults = hc::CheckInvariants(hc::Current());
    if (report && capacity > 0) {
        std::string text;
        for (const std::string& fault : faults)
            text += fault + "\n";
        const size_t length = std::min(text.size(), static_cast<size_t>(capacity) - 1);
        std::memcpy(report, text.data(), length);
        report[length] = '\0';
    }
    return static_cast<int>(faults.size());
}
}
