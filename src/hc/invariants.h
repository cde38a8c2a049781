#pragma once

#include <string>
#include <vector>

#include "hc/database.h"

namespace hc {

// What is wrong with the database's bookkeeping, one text per fault, none when it is sound: every
// live key resolves to its object and back; the sibling, kind and name tables agree with the
// objects; no include, style or reference aims at a dead object, and each is known to its target;
// renumbered keys are unique in their scope; every cached bound equals a fresh computation.
// Tests, the soak and the fuzzers call it after each step, in every build. It computes stale
// bounds as a side effect (as asking for them would), and changes nothing else.
std::vector<std::string> CheckInvariants(Database& db);

} // namespace hc
