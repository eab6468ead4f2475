#ifndef TALBASE_EXPORT_H
#define TALBASE_EXPORT_H
#define TALBASE_EXPORT __attribute__((visibility("default")))
#endif
