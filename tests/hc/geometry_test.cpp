#include "hc_test.h"
