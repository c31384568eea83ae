#include "HDRFile/FloatTiff.h"
