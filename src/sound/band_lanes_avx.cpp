// Registers of two bands each, in half the time. This file is compiled for processors with AVX.
#include "sound/band_lanes.h"

#include <immintrin.h>

namespace veldran {
namespace {

struct Avx {
    using Register = __m256d;
    static constexpr std::size_t kLanes = 4;
    static Register load(const double* from) { return _mm256_loadu_pd(from); }
    static Register loadPair(const double* from) { return _mm256_broadcast_pd(reinterpret_cast<const __m128d*>(from)); }
    static void store(double* to, Register value) { _mm256_storeu_pd(to, value); }
    static Register times(Register a, Register b) { return _mm256_mul_pd(a, b); }
    static Register minus(Register a, Register b) { return _mm256_sub_pd(a, b); }
    static Register size(Register a) { return _mm256_andnot_pd(_mm256_set1_pd(-0.0), a); }
    // The second where one of them is not a number.
    static Register larger(Register a, Register b) { return _mm256_max_pd(a, b); }
};

} // namespace

void runBandLanesAvx(const BandFactors& factors, BandState& state, const double* input, std::size_t pairs,
                     double* loudest) {
    runBandLanes<Avx>(factors, state, input, pairs, loudest);
}

} // namespace veldran
