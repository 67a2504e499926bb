#include "FirmwareCopy.h"

#include <vantor.h>

namespace VantorTool {

int CopyImage(const CopyRequest& r) {
    return CopyFileWithProgress(r.source, r.target, r.text, r.share);
}

}  // namespace VantorTool
