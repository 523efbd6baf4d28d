#include "core/quantize/ColourHistogram.h"

#include <algorithm>
#include <iterator>

#include "core/base/RunTimeFailure.h"
#include "core/base/threads.h"

namespace varnoth {

namespace {

constexpr std::size_t slot_count = 2 * ColourHistogram::most_exact;
constexpr int hash_shift = 32 - 17;
static_assert(slot_count == std::size_t{1} << (32 - hash_shift));

constexpr int bin_bits = 6;
constexpr std::size_t bin_count = std::size_t{1} << 3 * bin_bits;

std::size_t hash_of(Colour colour) {
    return static_cast<std::uint32_t>(colour) * 0x9E3779B1U >> hash_shift;
}

std::size_t bin_index(Colour colour) {
    const auto level = [](std::uint8_t value) { return std::size_t{value} >> (8 - bin_bits); };
    return (level(red_of(colour)) << bin_bits | level(green_of(colour))) << bin_bits | level(blue_of(colour));
}

ColourSum repeated(Colour colour, std::uint64_t times) {
    return {times, {times * blue_of(colour), times * green_of(colour), times * red_of(colour)}};
}

Colour colour_at(std::span<const std::uint8_t> pixels, std::size_t pixel) {
    return make_colour(pixels[4 * pixel + 2], pixels[4 * pixel + 1], pixels[4 * pixel]);
}

} // namespace

void ColourHistogram::add(std::span<const std::uint8_t> pixels) {
    const std::size_t pixel_count = pixels.size() / 4;
    for (std::size_t first = 0; first < pixel_count;) {
        const Colour colour = colour_at(pixels, first);
        std::size_t end = first + 1;
        while (end < pixel_count && colour_at(pixels, end) == colour) {
            ++end;
        }
        count(colour, end - first);
        first = end;
    }
}

void ColourHistogram::add(std::span<const std::uint8_t> pixels, std::span<const std::uint8_t> opaque) {
    if (opaque.size() != pixels.size() / 4) {
        fail(Failure::SubscriptOutOfRange);
    }
    for (std::size_t i = 0; i < opaque.size(); ++i) {
        if (opaque[i] != 0) {
            count(colour_at(pixels, i), 1);
        }
    }
}

void ColourHistogram::add(const ColourHistogram& other, std::size_t threads) {
    if (!other.exact() && exact()) {
        switch_to_bins();
    }
    run_in_slices(other.bins_.size(), threads, [&](std::size_t /*part*/, std::size_t first, std::size_t end) {
        for (std::size_t i = first; i < end; ++i) {
            bins_[i].add(other.bins_[i]);
        }
    });
    for (const Slot& slot : other.slots_) {
        if (slot.count > 0) {
            count(slot.colour, slot.count);
        }
    }
}

std::vector<ColourSum> ColourHistogram::bins() const {
    std::vector<ColourSum> result;
    if (exact()) {
        std::vector<Slot> used;
        std::ranges::copy_if(slots_, std::back_inserter(used),
                             [](const Slot& slot) { return slot.count > 0; });
        std::ranges::sort(used, {}, &Slot::colour);
        for (const Slot& slot : used) {
            result.push_back(repeated(slot.colour, slot.count));
        }
    } else {
        result.reserve(bins_.size());
        std::ranges::copy_if(bins_, std::back_inserter(result),
                             [](const ColourSum& bin) { return bin.weight > 0; });
    }
    return result;
}

void ColourHistogram::count(Colour colour, std::uint64_t times) {
    if (exact()) {
        count_exactly(colour, times);
    } else {
        bin_of(colour).add(repeated(colour, times));
    }
}

void ColourHistogram::count_exactly(Colour colour, std::uint64_t times) {
    if (slots_.empty()) {
        slots_.resize(slot_count);
    }
    std::size_t place = hash_of(colour);
    while (slots_[place].count > 0 && slots_[place].colour != colour) {
        place = (place + 1) % slot_count;
    }
    if (slots_[place].count > 0) {
        slots_[place].count += times;
    } else if (colours_ < most_exact) {
        slots_[place] = {colour, times};
        ++colours_;
    } else {
        switch_to_bins();
        bin_of(colour).add(repeated(colour, times));
    }
}

void ColourHistogram::switch_to_bins() {
    bins_.resize(bin_count);
    for (const Slot& slot : slots_) {
        if (slot.count > 0) {
            bin_of(slot.colour).add(repeated(slot.colour, slot.count));
        }
    }
    std::vector<Slot>().swap(slots_);
    colours_ = 0;
}

ColourSum& ColourHistogram::bin_of(Colour colour) {
    return bins_[bin_index(colour)];
}

} // namespace varnoth
