#pragma once
/// @file
/// Keeps the floating-point results of inline code the same whatever flags a host compiles it with: products are
/// rounded before they are added, and square roots are single instructions.
///
/// clang honours a pragma around the code (`CADGEOM_FP_BEGIN` ... `CADGEOM_FP_END`). g++ decides about fused
/// multiply-adds after inlining and by the flags of the caller, so a pragma there would either be without effect or
/// forbid the inlining; a product passes through an empty register constraint instead. That costs no instruction but
/// hides the product from the vectoriser, so it is left out where fusing cannot happen: on targets without fused
/// multiply-add, and under `-ffp-contract=off`, which the CMake target and the pkg-config file hand to hosts together
/// with `CADGEOM_FP_CONTRACT_OFF`.

#include <cmath>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#if defined(__clang__)
#define CADGEOM_FP_BEGIN _Pragma("float_control(push)") _Pragma("clang fp contract(off)")
#define CADGEOM_FP_END _Pragma("float_control(pop)")
#elif defined(_MSC_VER)
#define CADGEOM_FP_BEGIN __pragma(float_control(push)) __pragma(fp_contract(off))
#define CADGEOM_FP_END __pragma(float_control(pop))
#else
#define CADGEOM_FP_BEGIN
#define CADGEOM_FP_END
#endif

#if defined(__GNUC__) && !defined(__clang__) && defined(__FP_FAST_FMA) && !defined(CADGEOM_FP_CONTRACT_OFF)
#if defined(__x86_64__) || defined(__i386__)
#define CADGEOM_ROUND_IN_REGISTER(value) __asm__("" : "+x"(value))
#elif defined(__aarch64__)
#define CADGEOM_ROUND_IN_REGISTER(value) __asm__("" : "+w"(value))
#else
#define CADGEOM_ROUND_IN_REGISTER(value) __asm__("" : "+m"(value))
#endif
#else
#define CADGEOM_ROUND_IN_REGISTER(value) static_cast<void>(0)
#endif

CADGEOM_FP_BEGIN

namespace cadgeom::detail {

/// a * b, rounded to T on its own: never fused with an addition that follows.
template <class T>
inline T Product(T a, T b)
{
    T product = a * b;
    CADGEOM_ROUND_IN_REGISTER(product);
    return product;
}

/// Square root that never writes errno, so that loops over it need no call and no spill.
inline double Sqrt(double value)
{
#if defined(__SSE2__) && !defined(__NO_MATH_ERRNO__)
    const __m128d packed = _mm_set_sd(value);
    return _mm_cvtsd_f64(_mm_sqrt_sd(packed, packed));
#else
    return std::sqrt(value);
#endif
}

/// Single-precision form of Sqrt(double).
inline float Sqrt(float value)
{
#if defined(__SSE2__) && !defined(__NO_MATH_ERRNO__)
    return _mm_cvtss_f32(_mm_sqrt_ss(_mm_set_ss(value)));
#else
    return std::sqrt(value);
#endif
}

} // namespace cadgeom::detail

CADGEOM_FP_END

#undef CADGEOM_ROUND_IN_REGISTER
