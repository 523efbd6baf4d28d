#include "core/image/ColourPlanes.h"

#include <cstring>

#if defined(__x86_64__) && defined(__linux__)
#include <immintrin.h>
#endif

namespace varnoth {

ColourPlanes::ColourPlanes(std::span<const RGBQUAD, 256> colours) {
    for (std::size_t i = 0; i < colours.size(); ++i) {
        std::array<std::uint8_t, 4> bytes{};
        static_assert(sizeof bytes == sizeof colours[i]);
        std::memcpy(bytes.data(), &colours[i], sizeof bytes);
        for (std::size_t channel = 0; channel < bytes.size(); ++channel) {
            planes_[channel][i] = bytes[channel];
        }
    }
}

#if defined(__x86_64__) && defined(__linux__)

namespace {

// 64 bytes.
using Vector = __m512i;

__attribute__((target("avx512f,avx512bw,avx512vbmi"))) std::size_t
expand_wide(const std::uint8_t* planes, std::span<const std::uint8_t> indices, std::uint8_t* pixels) {
    constexpr std::size_t step = 64;
    // The bytes of the four planes are woven within quarters of a vector. With the indices in this order, a
    // woven quarter holds the four pixels that belong there.
    const Vector order = _mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15);
    std::size_t i = 0;
    for (; i + step <= indices.size(); i += step) {
        const Vector index = _mm512_maskz_permutexvar_epi32(0xFFFF, order, _mm512_loadu_si512(&indices[i]));
        const __mmask64 is_in_upper_half = _mm512_movepi8_mask(index);
        Vector found[4];
        for (std::size_t channel = 0; channel < 4; ++channel) {
            const std::uint8_t* const plane = planes + 256 * channel;
            const Vector lower =
                _mm512_permutex2var_epi8(_mm512_loadu_si512(plane), index, _mm512_loadu_si512(plane + step));
            const Vector upper = _mm512_permutex2var_epi8(_mm512_loadu_si512(plane + 2 * step), index,
                                                          _mm512_loadu_si512(plane + 3 * step));
            found[channel] = _mm512_mask_blend_epi8(is_in_upper_half, lower, upper);
        }
        const Vector low_01 = _mm512_unpacklo_epi8(found[0], found[1]);
        const Vector low_23 = _mm512_unpacklo_epi8(found[2], found[3]);
        const Vector high_01 = _mm512_unpackhi_epi8(found[0], found[1]);
        const Vector high_23 = _mm512_unpackhi_epi8(found[2], found[3]);
        std::uint8_t* const to = pixels + 4 * i;
        _mm512_storeu_si512(to, _mm512_unpacklo_epi16(low_01, low_23));
        _mm512_storeu_si512(to + step, _mm512_unpackhi_epi16(low_01, low_23));
        _mm512_storeu_si512(to + 2 * step, _mm512_unpacklo_epi16(high_01, high_23));
        _mm512_storeu_si512(to + 3 * step, _mm512_unpackhi_epi16(high_01, high_23));
    }
    return i;
}

} // namespace

std::size_t ColourPlanes::expand(std::span<const std::uint8_t> indices, std::uint8_t* pixels) const {
    static const bool is_possible = __builtin_cpu_supports("avx512vbmi") != 0;
    return is_possible ? expand_wide(planes_[0].data(), indices, pixels) : 0;
}

#else

std::size_t ColourPlanes::expand(std::span<const std::uint8_t>, std::uint8_t*) const {
    return 0;
}

#endif

} // namespace varnoth
