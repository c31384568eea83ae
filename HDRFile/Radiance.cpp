#include "HDRFile/Radiance.h"
