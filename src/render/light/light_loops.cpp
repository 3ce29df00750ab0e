// Registers that every 64-bit processor of the kind has.
#include "render/light/light_loops.h"

#include "render/light/light_kernels.h"

#include <emmintrin.h>

namespace veldran {
namespace {

struct Sse2 {
    using Register = __m128i;
    static constexpr int kLanes = 16;
    static Register load(const void* from) { return _mm_loadu_si128(static_cast<const __m128i*>(from)); }
    static void store(void* to, Register value) { _mm_storeu_si128(static_cast<__m128i*>(to), value); }
    // There is one half.
    static Register loadHalves(const void* first, const void*) { return load(first); }
    static void storeHalves(void* first, void*, Register value) { store(first, value); }
    static Register zero() { return _mm_setzero_si128(); }
    static Register repeated(int word) { return _mm_set1_epi16(static_cast<short>(word)); }
    static Register unpackLow(Register a, Register b) { return _mm_unpacklo_epi8(a, b); }
    static Register unpackHigh(Register a, Register b) { return _mm_unpackhi_epi8(a, b); }
    static Register packed(Register low, Register high) { return _mm_packus_epi16(low, high); }
    static Register plusBytes(Register a, Register b) { return _mm_adds_epu8(a, b); }
    static Register plus(Register a, Register b) { return _mm_add_epi16(a, b); }
    static Register minus(Register a, Register b) { return _mm_sub_epi16(a, b); }
    static Register times(Register a, Register b) { return _mm_mullo_epi16(a, b); }
    static Register times128(Register a) { return _mm_slli_epi16(a, 7); }
    static Register timesHigh(Register a, Register b) { return _mm_mulhi_epu16(a, b); }
    static Register timesHighSigned(Register a, Register b) { return _mm_mulhi_epi16(a, b); }
    static Register larger(Register a, Register b) { return _mm_max_epi16(a, b); }
};

} // namespace

const LightLoops kSse2Light = {Sse2::kLanes, blurLight<Sse2>, sumLightRows<Sse2>, fillLight<Sse2>};

// The system has to keep the registers' upper halves too; this asks for both.
const LightLoops& bestLight() {
#ifdef __GNUC__
    static const bool hasAvx2 = __builtin_cpu_supports("avx2") != 0;
    return hasAvx2 ? kAvx2Light : kSse2Light;
#else
    return kSse2Light;
#endif
}

} // namespace veldran
