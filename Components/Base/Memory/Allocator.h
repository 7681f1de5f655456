/* The MA_ allocation interface: C entry points that the application calls
 * instead of the C runtime's allocator.
 *
 * Every allocation goes straight to the C heap. The interface was made for
 * a debugging allocator; its checking, tracing and reporting entry points
 * are kept, accept any arguments and do nothing. What remains of substance
 * is the table of 52 size classes with its block-size advice
 * (MA_get_optimal_size), the bookkeeping figure per block and the
 * settings:
 *
 *     MA_get_optimal_size(1000, 24, 0)   => 24: no waste in the 24-byte class
 *     MA_get_optimal_size(10, 100, 0)    => the class whose waste per element
 *                                           is least before 10 elements fit
 *     MA_get_block_overhead()            => 24, or 88 while debug > 0
 *
 * The settings and the output stream are plain values, meant to be set at
 * start-up; the allocation functions are as thread-safe as the C heap.
 *
 * This header is valid C and C++. */
#ifndef BASE_MEMORY_ALLOCATOR_H
#define BASE_MEMORY_ALLOCATOR_H

#include <Base/Utility/Api.h>

#include <stddef.h>
#include <stdio.h>

/* The entry points that ignore their arguments take any: in C++ through an
 * ellipsis, in C through a declaration without a prototype. */
#if defined(__cplusplus)
#    define BASE_MA_ANY_ARGUMENTS ...
#else
#    define BASE_MA_ANY_ARGUMENTS
#endif

BASE_BEGIN_C

BASE_API void* MA_malloc(size_t size);
BASE_API void* MA_calloc(size_t count, size_t size);
BASE_API void* MA_realloc(void* block, size_t size);
BASE_API void MA_free(void* block);
/* malloc(size); `actualSize`, when not null, receives `size`. */
BASE_API void* MA_malloc_from_freelist(size_t size, size_t* actualSize);

/* 0: the C heap keeps no size that the library could report. */
BASE_API size_t MA_msize(BASE_MA_ANY_ARGUMENTS);
/* The bytes in use as the library tracks them: nothing is tracked, so 0. */
BASE_API size_t MA_get_memory_used(void);
/* The bookkeeping bytes charged per block: 88 while debug > 0, else 24. */
BASE_API size_t MA_get_block_overhead(void);

/* The size-class block size with the least waste per element of
 * `elementSize` bytes, looking no further than the first class that holds
 * `maxCount` elements and, unless `maxBlock` is 0, no further than
 * `maxBlock` bytes. Equal waste keeps the smaller block; a class that
 * `elementSize` divides is taken at once. 0 when no class is large enough,
 * and for an `elementSize` of 0. */
BASE_API unsigned int MA_get_optimal_size(int maxCount, unsigned int elementSize,
                                          unsigned int maxBlock);
/* How many elements of `elementSize` bytes the blocks on the free lists
 * could hold, at most `limit`. The free lists stay empty here, so 0. */
BASE_API int MA_check_freelist(int limit, size_t elementSize);
/* Writes "tally  0x0 0 0 <directive>\n" to the output stream while debug is
 * not 0 and a stream is set. */
BASE_API void MA_dump_tally_directive(const char* directive);
/* The stream for tally output; null (the default) writes nothing. */
BASE_API void MA_set_output(FILE* stream);

/* Settings: debug (initially 0), chkalloc (0), chkfree (0), scatter (1). */
BASE_API int MA_var_debug_get(void);
BASE_API void MA_var_debug_set(int value);
BASE_API int MA_var_chkalloc_get(void);
BASE_API void MA_var_chkalloc_set(int value);
BASE_API int MA_var_chkfree_get(void);
BASE_API void MA_var_chkfree_set(int value);
BASE_API int MA_var_scatter_get(void);
BASE_API void MA_var_scatter_set(int value);
/* 0, whatever the arguments. */
BASE_API int MA_var_base_get(BASE_MA_ANY_ARGUMENTS);
BASE_API int MA_var_top_get(BASE_MA_ANY_ARGUMENTS);

/* The debugging allocator's checks, reports and traces: they do nothing. */
BASE_API void MA_check(BASE_MA_ANY_ARGUMENTS);
BASE_API void MA_comment(BASE_MA_ANY_ARGUMENTS);
BASE_API void MA_dump_alloc_list(BASE_MA_ANY_ARGUMENTS);
BASE_API void MA_exit(BASE_MA_ANY_ARGUMENTS);
BASE_API void MA_init(BASE_MA_ANY_ARGUMENTS);
BASE_API void MA_leak_report(BASE_MA_ANY_ARGUMENTS);
BASE_API void MA_stats(BASE_MA_ANY_ARGUMENTS);
BASE_API void MA_tag_allocated(BASE_MA_ANY_ARGUMENTS);
BASE_API void MA_trace(BASE_MA_ANY_ARGUMENTS);
BASE_API void malloc_check_action_function(BASE_MA_ANY_ARGUMENTS);

BASE_END_C

#endif
