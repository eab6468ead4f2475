// Marks what the library shows to its clients; everything else is hidden (ELF visibility).

#ifndef TALBASE_EXPORT_H
#define TALBASE_EXPORT_H

#define TALBASE_EXPORT __attribute__((visibility("default")))

#endif
