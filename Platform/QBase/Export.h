// Marks what the libraries of the family show to their clients; everything else is hidden. The family is built for ELF
// systems whose wide characters have 32 bits; whatever handles text passes by here, so this is where others are
// refused.

#ifndef QBASE_EXPORT_H
#define QBASE_EXPORT_H

#define Q8_EXPORT __attribute__((visibility("default")))

static_assert(sizeof(wchar_t) == 4, "the family's texts hold one code point in each wide character");

#endif
