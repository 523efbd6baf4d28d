// How many cases a long test tries. The ordinary build tries all; under the sanitizers, which are about ten
// times slower and check memory and arithmetic on the same paths, a fraction is enough.
#pragma once

namespace varnoth::test {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr unsigned share = 4;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr unsigned share = 4;
#else
inline constexpr unsigned share = 1;
#endif
#else
inline constexpr unsigned share = 1;
#endif

/// That many cases, or a fraction of them under the sanitizers.
template <typename Count>
constexpr Count cases(Count count) {
    constexpr auto part = static_cast<Count>(share);
    return count < part ? Count{1} : static_cast<Count>(count / part);
}

} // namespace varnoth::test
