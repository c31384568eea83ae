#include "image/ImageDecoder.h"
