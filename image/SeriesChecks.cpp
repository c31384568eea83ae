#include "image/SeriesChecks.h"
