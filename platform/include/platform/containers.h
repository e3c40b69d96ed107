// Lists (`Tbl`) and associative arrays (`rbtree`) of pointers, as the seismic environment's interfaces pass them.
//
// Both hold the pointers they are given and never look behind them; what they point to belongs to the caller
// unless a `free` function is handed to the operation that empties them. Null containers are treated as empty by
// every operation but the ones that add. Indexes count from 0.
#ifndef TRIGLUB_PLATFORM_CONTAINERS_H
#define TRIGLUB_PLATFORM_CONTAINERS_H

#include "platform/export.h"

struct Tbl;
struct rbtree;

// Frees one value of a container; null where a container is to be emptied without freeing.
using FreeValue = void (*)(void* value);

// A new empty list; `size_hint` is the expected number of elements (0 and less mean unknown).
// The caller releases it with freetbl.
TRIGLUB_API Tbl* newtbl(int size_hint);
// Element i, or null when i is negative or not below maxtbl.
TRIGLUB_API void* gettbl(Tbl* list, long i);
// Puts a value at i; the list grows with null elements up to i. Returns 0, or -1 for a negative i.
TRIGLUB_API int settbl(Tbl* list, long i, const void* value);
// Adds a value at the end; returns its index.
TRIGLUB_API long pushtbl(Tbl* list, const void* value);
// Removes the last element and returns it; null when the list is empty.
TRIGLUB_API void* poptbl(Tbl* list);
// The number of elements.
TRIGLUB_API long maxtbl(Tbl* list);
// Empties the list, passing each non-null element to `free_value` unless that is null.
TRIGLUB_API void clrtbl(Tbl* list, FreeValue free_value);
// As clrtbl, then releases the list itself.
TRIGLUB_API void freetbl(Tbl* list, FreeValue free_value);

// A new empty array with text keys, compared by bytes. `compare` must be null (kept for callers of the classic
// interface). The caller releases it with freearr.
TRIGLUB_API rbtree* newarr(int (*compare)(const char*, const char*));
// Sets the value of a key (the key is copied); returns the value it replaces, or null.
TRIGLUB_API void* setarr(rbtree* array, const char* key, const void* value);
// The value of a key, or null when the key is absent.
TRIGLUB_API void* getarr(rbtree* array, const char* key);
// Removes a key; returns its value, or null when the key was absent.
TRIGLUB_API void* delarr(rbtree* array, const char* key);
// The number of keys.
TRIGLUB_API long cntarr(rbtree* array);
// The keys in ascending byte order in a new list, which the caller releases with freetbl(keys, 0). The texts belong
// to the array and are valid until their key is removed. Null only for a null array.
TRIGLUB_API Tbl* keysarr(rbtree* array);
// Releases the array, passing each non-null value to `free_value` unless that is null.
TRIGLUB_API void freearr(rbtree* array, FreeValue free_value);

#endif
