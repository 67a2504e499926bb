// SPDX-License-Identifier: MIT
#ifndef VANTOR_EXPORT_H
#define VANTOR_EXPORT_H

/* The library is built with hidden visibility; only what carries this mark
 * reaches the dynamic symbol table, so hosts cannot come to depend on internals. */
#if defined(__GNUC__)
#define VANTOR_API __attribute__((visibility("default")))
#else
#define VANTOR_API
#endif

#endif
