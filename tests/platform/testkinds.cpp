#include "tests/platform/testkinds.h"
