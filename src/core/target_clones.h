#pragma once
/// @file
/// What loops over large arrays ask of the compiler.

/// `CADGEOM_TARGET_CLONES` compiles a function once for each of these instruction sets; the loader picks one. Without
/// contraction every clone gives the same bits. It needs g++ and ELF's indirect functions, whose resolvers run before a
/// sanitizer is ready.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && defined(__linux__) && defined(__OPTIMIZE__) &&  \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define CADGEOM_TARGET_CLONES __attribute__((target_clones("default", "avx2", "avx512f")))
#else
#define CADGEOM_TARGET_CLONES
#endif

/// `CADGEOM_ALWAYS_INLINE` stands on function templates that must become part of each clone, and
/// `CADGEOM_ALWAYS_INLINE_LAMBDA` behind the parameters of such a lambda.
/// `CADGEOM_PREFETCH_FOR_WRITING` and `..._READING` ask for the cache line of an address, which need not exist.
#if defined(__GNUC__)
#define CADGEOM_ALWAYS_INLINE __attribute__((always_inline)) inline
#define CADGEOM_ALWAYS_INLINE_LAMBDA __attribute__((always_inline))
#define CADGEOM_PREFETCH_FOR_WRITING(address) __builtin_prefetch(address, 1)
#define CADGEOM_PREFETCH_FOR_READING(address) __builtin_prefetch(address)
#else
#define CADGEOM_ALWAYS_INLINE inline
#define CADGEOM_ALWAYS_INLINE_LAMBDA
#define CADGEOM_PREFETCH_FOR_WRITING(address) static_cast<void>(address)
#define CADGEOM_PREFETCH_FOR_READING(address) static_cast<void>(address)
#endif
