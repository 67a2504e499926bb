// SPDX-License-Identifier: MIT
#ifndef VANTOR_ENUMS_H
#define VANTOR_ENUMS_H

/* Shared by the C interface (which passes these as plain ints) and the classes.
 * In C++ they live in namespace Vantor; vantor.h lifts them to the global scope. */
/* In C++ the enums get int as their fixed type: hosts pass any int through the C
 * interface, and a value outside the named ones must still be a valid enum value. */
#ifdef __cplusplus
#define VANTOR_ENUM_BASE : int
namespace Vantor {
#else
#define VANTOR_ENUM_BASE
#endif

/* Horizontal placement of a text line; eAlignFillLine is a flag added to one of
 * the three others and paints a full-width band behind the text. */
typedef enum eAlignMode VANTOR_ENUM_BASE {
    eAlignLeft = 1,
    eAlignCenter = 2,
    eAlignRight = 3,
    eAlignFillLine = 0x10
} eAlignMode;

/* The buttons of a dialog; 0 (no buttons) has no name of its own. */
typedef enum eDialogType VANTOR_ENUM_BASE {
    eDialogOk = 1,
    eDialogOkCancel = 2,
    eDialogYesNo = 3
} eDialogType;

/* Menu entries in a column or in a row. */
typedef enum eMenuOrientation VANTOR_ENUM_BASE {
    eMenuVertical = 0,
    eMenuHorizontal = 1
} eMenuOrientation;

#ifdef __cplusplus
}
#endif

#endif
