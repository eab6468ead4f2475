// Marks what the libraries of the family show to their clients; everything else is hidden (ELF visibility).

#ifndef QBASE_EXPORT_H
#define QBASE_EXPORT_H

#define Q8_EXPORT __attribute__((visibility("default")))

#endif
