// Registers of two halves. This file is compiled for processors with AVX2.
#include "render/light/light_loops.h"

#include "render/light/light_kernels.h"

#include <immintrin.h>

namespace veldran {
namespace {

struct Avx2 {
    using Register = __m256i;
    static constexpr int kLanes = 32;
    static Register load(const void* from) { return _mm256_loadu_si256(static_cast<const __m256i*>(from)); }
    static void store(void* to, Register value) { _mm256_storeu_si256(static_cast<__m256i*>(to), value); }
    static Register loadHalves(const void* first, const void* second) {
        const __m256i low = _mm256_castsi128_si256(_mm_loadu_si128(static_cast<const __m128i*>(first)));
        return _mm256_inserti128_si256(low, _mm_loadu_si128(static_cast<const __m128i*>(second)), 1);
    }
    static void storeHalves(void* first, void* second, Register value) {
        _mm_storeu_si128(static_cast<__m128i*>(first), _mm256_castsi256_si128(value));
        _mm_storeu_si128(static_cast<__m128i*>(second), _mm256_extracti128_si256(value, 1));
    }
    static Register zero() { return _mm256_setzero_si256(); }
    static Register repeated(int word) { return _mm256_set1_epi16(static_cast<short>(word)); }
    static Register unpackLow(Register a, Register b) { return _mm256_unpacklo_epi8(a, b); }
    static Register unpackHigh(Register a, Register b) { return _mm256_unpackhi_epi8(a, b); }
    static Register packed(Register low, Register high) { return _mm256_packus_epi16(low, high); }
    static Register plusBytes(Register a, Register b) { return _mm256_adds_epu8(a, b); }
    static Register plus(Register a, Register b) { return _mm256_add_epi16(a, b); }
    static Register minus(Register a, Register b) { return _mm256_sub_epi16(a, b); }
    static Register times(Register a, Register b) { return _mm256_mullo_epi16(a, b); }
    static Register times128(Register a) { return _mm256_slli_epi16(a, 7); }
    static Register timesHigh(Register a, Register b) { return _mm256_mulhi_epu16(a, b); }
    static Register timesHighSigned(Register a, Register b) { return _mm256_mulhi_epi16(a, b); }
    static Register larger(Register a, Register b) { return _mm256_max_epi16(a, b); }
};

} // namespace

const LightLoops kAvx2Light = {Avx2::kLanes, blurLight<Avx2>, sumLightRows<Avx2>, fillLight<Avx2>};

} // namespace veldran
