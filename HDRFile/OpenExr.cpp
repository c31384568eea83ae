#include "HDRFile/OpenExr.h"
