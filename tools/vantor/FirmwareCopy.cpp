// SPDX-License-Identifier: MIT
#include "FirmwareCopy.h"

#include <vantor.h>

namespace VantorTool {

// The firmware copy: any size, partitions too, and a regular target replaced only by a
// complete, synced copy, so a failure leaves the old image in place.
int CopyImage(const CopyRequest& r) {
    return CopyFileWithProgressEx(r.source, r.target, r.text, r.share,
                                  r.verify ? VANTOR_COPY_VERIFY : 0);
}

}  // namespace VantorTool
