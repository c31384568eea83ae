#include "image/SourceCache.h"
