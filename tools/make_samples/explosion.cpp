#include "explosion.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace varnoth::samples {

namespace {

struct Light {
    double red = 0;
    double green = 0;
    double blue = 0;

    friend Light operator+(const Light& a, const Light& b) {
        return {a.red + b.red, a.green + b.green, a.blue + b.blue};
    }

    friend Light operator*(const Light& a, double factor) {
        return {a.red * factor, a.green * factor, a.blue * factor};
    }
};

Light mix(const Light& a, const Light& b, double share) {
    return a * (1 - share) + b * share;
}

Colour colour_of(const Light& light) {
    const auto byte = [](double value) {
        return static_cast<std::uint8_t>(std::clamp(value, 0.0, 1.0) * 255 + 0.5);
    };
    return make_colour(byte(light.red), byte(light.green), byte(light.blue));
}

/// 0 below `from`, 1 above `to`, and smooth in between.
double smooth_step(double from, double to, double value) {
    const double share = std::clamp((value - from) / (to - from), 0.0, 1.0);
    return share * share * (3 - 2 * share);
}

/// A pseudo-random number from 0 to 1 for each lattice point.
double lattice(std::int32_t x, std::int32_t y, std::int32_t z, std::uint32_t seed) {
    std::uint32_t hash = seed;
    for (const std::int32_t coordinate : {x, y, z}) {
        hash = (hash ^ static_cast<std::uint32_t>(coordinate)) * 0x85EBCA6BU;
        hash ^= hash >> 13;
        hash *= 0xC2B2AE35U;
        hash ^= hash >> 16;
    }
    return hash / 4294967295.0;
}

/// Value noise, from 0 to 1.
double noise(double x, double y, double z, std::uint32_t seed) {
    const double floor_x = std::floor(x);
    const double floor_y = std::floor(y);
    const double floor_z = std::floor(z);
    const double share_x = smooth_step(0, 1, x - floor_x);
    const double share_y = smooth_step(0, 1, y - floor_y);
    const double share_z = smooth_step(0, 1, z - floor_z);
    double sum = 0;
    for (int corner = 0; corner < 8; ++corner) {
        const int right = corner & 1;
        const int down = corner >> 1 & 1;
        const int later = corner >> 2;
        const double weight = (right != 0 ? share_x : 1 - share_x) * (down != 0 ? share_y : 1 - share_y) *
                              (later != 0 ? share_z : 1 - share_z);
        sum += weight * lattice(static_cast<std::int32_t>(floor_x) + right,
                                static_cast<std::int32_t>(floor_y) + down,
                                static_cast<std::int32_t>(floor_z) + later, seed);
    }
    return sum;
}

/// Four octaves of value noise, from 0 to 1.
double turbulence(double x, double y, double z, std::uint32_t seed) {
    double sum = 0;
    double weight = 0.5;
    double scale = 1;
    for (std::uint32_t octave = 0; octave < 4; ++octave) {
        sum += weight * noise(x * scale, y * scale, z * scale, seed + octave);
        weight *= 0.5;
        scale *= 2;
    }
    return std::clamp((sum - 0.47) * 1.7 + 0.5, 0.0, 1.0);
}

/// The colour of burning gas: 0 is cold, 1 is white-hot.
Light fire(double heat) {
    struct Stop {
        double heat;
        Light light;
    };

    static constexpr std::array<Stop, 7> stops{{{0.00, {0.00, 0.00, 0.00}},
                                                {0.18, {0.30, 0.03, 0.01}},
                                                {0.38, {0.78, 0.18, 0.02}},
                                                {0.58, {0.98, 0.48, 0.06}},
                                                {0.76, {1.00, 0.78, 0.24}},
                                                {0.90, {1.00, 0.95, 0.62}},
                                                {1.00, {1.00, 1.00, 0.95}}}};
    const double clamped = std::clamp(heat, 0.0, 1.0);
    std::size_t upper = 1;
    while (upper + 1 < stops.size() && stops[upper].heat < clamped) {
        ++upper;
    }
    const Stop& below = stops[upper - 1];
    const Stop& above = stops[upper];
    return mix(below.light, above.light, (clamped - below.heat) / (above.heat - below.heat));
}

/// The colour of smoke; `shade`, 0 to 1, is how much light it gets, `warmth`, 0 to 1, how brown it is.
Light smoke(double shade, double warmth) {
    return mix(Light{0.50, 0.52, 0.58}, Light{0.66, 0.46, 0.30}, warmth) * (0.20 + 0.85 * shade);
}

/// The light of embers that fly outward and slow down.
Light embers_at(double x, double y, double time) {
    constexpr std::uint32_t seed = 77;
    Light sum;
    for (std::int32_t ember = 0; ember < 26; ++ember) {
        double across = lattice(ember, 0, 0, seed) * 2 - 1;
        double down = lattice(ember, 1, 0, seed) * 2 - 1;
        const double length = std::sqrt(across * across + down * down) + 0.01;
        const double way = (0.35 + 0.75 * lattice(ember, 2, 0, seed)) * time * (2 - time);
        across = across / length * way;
        down = down / length * way + 0.25 * time * time;
        const double distance = ((x - across) * (x - across) + (y - down) * (y - down)) * 900;
        const double life = 1 - time / (0.45 + 0.55 * lattice(ember, 3, 0, seed));
        if (life > 0 && distance < 9) {
            sum = sum + fire(0.35 + 0.6 * life) * (life / (1 + distance * distance));
        }
    }
    return sum;
}

/// The light at x and y, from -1 to 1 over the frame, at a time from 0 to 1 over the explosion.
Light light_at(double x, double y, double time) {
    const double slowing = time * (2 - time);
    const double radius = 0.36 + 0.50 * slowing;
    const double rise = 0.10 * time;
    const double zoom = 2.6 / (0.75 + 0.6 * slowing);
    const double warp_x = (turbulence(x * 1.7, y * 1.7, time, 11) - 0.5) * 0.42;
    const double warp_y = (turbulence(x * 1.7, y * 1.7, time + 9, 12) - 0.5) * 0.42;
    const double across = x + warp_x;
    const double down = y + warp_y + rise;
    const double distance = std::sqrt(across * across + down * down) / radius;

    const double billows = turbulence(across * zoom, down * zoom, time * 2.2, 21);
    const double detail = turbulence(across * zoom * 2.1, down * zoom * 2.1, time * 3.1 + 5, 31);
    const double cover = smooth_step(1.06, 0.62, distance + (billows - 0.5) * 0.7);
    const double thinning = 1 - 0.62 * smooth_step(0.68, 1.1, time);

    const double cooling = 1.2 - 1.42 * time;
    const double heat = cooling + (billows - 0.5) * (0.45 + 1.25 * time) + (detail - 0.5) * 0.38 -
                        distance * distance * (0.42 + 0.25 * time);
    const double shade = std::clamp(0.55 - down * 0.45 + (detail - 0.5) * 1.3, 0.0, 1.0);
    const double smoke_share = smooth_step(0.42, 0.05, heat) * smooth_step(0.05, 0.4, time);
    const Light body =
        fire(heat) +
        smoke(shade, std::clamp(billows * 1.5 - 0.35, 0.0, 1.0) * (1 - 0.3 * time)) * smoke_share;

    const double plain_distance = std::sqrt(x * x + y * y) / (radius * 1.75);
    const double halo = std::max(0.0, 1 - plain_distance) * std::max(0.0, 1 - time * 1.5);
    const Light glow = Light{0.75, 0.26, 0.06} * (halo * halo * 0.9);

    return mix(glow, body + glow * 0.25, cover * thinning) + embers_at(x, y, time);
}

} // namespace

std::vector<Colour> explosion_frame(std::int32_t frame) {
    const double time = static_cast<double>(frame) / (explosion_frames - 1);
    std::vector<Colour> colours;
    colours.reserve(static_cast<std::size_t>(explosion_side) * explosion_side);
    for (std::int32_t y = 0; y < explosion_side; ++y) {
        for (std::int32_t x = 0; x < explosion_side; ++x) {
            const double half = explosion_side / 2.0;
            colours.push_back(colour_of(light_at((x + 0.5 - half) / half, (y + 0.5 - half) / half, time)));
        }
    }
    return colours;
}

std::array<Colour, 256> chart_colours() {
    std::array<Colour, 256> colours{};
    for (std::size_t i = 0; i < colours.size(); ++i) {
        const double across = static_cast<double>(i % 16) / 15;
        const double down = static_cast<double>(i / 16 % 8) / 7;
        if (i < 128) {
            colours[i] = colour_of(fire(static_cast<double>(i) / 127));
        } else {
            colours[i] = colour_of(smoke(across, 1 - down) + fire(across * 0.8) * (down * down * 0.8));
        }
    }
    return colours;
}

} // namespace varnoth::samples
