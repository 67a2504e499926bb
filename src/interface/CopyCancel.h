// SPDX-License-Identifier: MIT
// The request to stop a copy: set from a signal handler by CancelCopy, read and consumed
// by the copy between blocks.
#ifndef VANTOR_COPYCANCEL_H
#define VANTOR_COPYCANCEL_H

namespace Vantor {

bool CopyCancelRequested();
void ClearCopyCancel();

}  // namespace Vantor

#endif
