#include "support/random.h"
