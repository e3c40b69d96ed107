// The mark of a symbol that leaves the shared library.
//
// The library is built with hidden visibility; only what carries TRIGLUB_API can be called from outside.
#ifndef TRIGLUB_PLATFORM_EXPORT_H
#define TRIGLUB_PLATFORM_EXPORT_H

#define TRIGLUB_API __attribute__((visibility("default")))

#endif
