// The line-art job now lives in the library's public interface; this name
// stays only until the thin-line tests include PictraceLineArt.h.
#pragma once

#include "PictraceLineArt.h"
