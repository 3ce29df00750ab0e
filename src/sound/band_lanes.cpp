// Registers that every 64-bit processor of the kind has: both channels of a band.
#include "sound/band_lanes.h"

#include <emmintrin.h>

namespace veldran {
namespace {

struct Sse2 {
    using Register = __m128d;
    static constexpr std::size_t kLanes = 2;
    static Register load(const double* from) { return _mm_load_pd(from); }
    static Register loadPair(const double* from) { return _mm_load_pd(from); }
    static void store(double* to, Register value) { _mm_store_pd(to, value); }
    static Register times(Register a, Register b) { return _mm_mul_pd(a, b); }
    static Register minus(Register a, Register b) { return _mm_sub_pd(a, b); }
    static Register size(Register a) { return _mm_andnot_pd(_mm_set1_pd(-0.0), a); }
    // The second where one of them is not a number.
    static Register larger(Register a, Register b) { return _mm_max_pd(a, b); }
};

} // namespace

void runBandLanesSse2(const BandFactors& factors, BandState& state, const double* input, std::size_t pairs,
                      double* loudest) {
    runBandLanes<Sse2>(factors, state, input, pairs, loudest);
}

// The system has to keep the registers' upper halves too; this asks for both.
bool hasAvx() {
#ifdef __GNUC__
    return __builtin_cpu_supports("avx") != 0;
#else
    return false;
#endif
}

} // namespace veldran
