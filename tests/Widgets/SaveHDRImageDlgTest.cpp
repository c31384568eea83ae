#include "Widgets/SaveHDRImageDlg.h"
