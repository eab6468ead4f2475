#ifndef QBASE_EXPORT_H
#define QBASE_EXPORT_H
#define Q8_EXPORT __attribute__((visibility("default")))
static_assert(sizeof(wchar_t) == 4, "the family's texts hold one code point in each wide character");
#endif
