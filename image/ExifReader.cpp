#include "image/ExifReader.h"
