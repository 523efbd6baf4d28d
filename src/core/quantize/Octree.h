// The tree behind the optimal palette: octree colour quantisation (Gervautz and Purgathofer, "A simple method
// for color quantization: octree quantization", 1988). Each level splits a colour box at the midpoint of its
// bounds; the tree is reduced while pixels are added. The order in which positions are allocated and reused
// affects the result, because palettes list the leaves by position.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace varnoth {

/// The factors by which channel values are multiplied before they are compared in a split.
struct ChannelWeights {
    float red;
    float green;
    float blue;
};

class Octree {
  public:
    /// The channel sums and the number of the pixels of one leaf.
    struct Leaf {
        std::int32_t SumR;
        std::int32_t SumG;
        std::int32_t SumB;
        std::int32_t PixelCount;
    };

    /// A tree of `levels` levels that is reduced to at most `maximum` leaves. The root never becomes a leaf,
    /// so up to eight leaves may remain even if the maximum is lower.
    Octree(std::int32_t maximum, std::uint8_t levels, const ChannelWeights& weights);

    /// Adds pixels of 4 bytes: blue, green, red and an unused byte. Reduces the tree after each one. There
    /// are lists of reducible nodes for levels 1 to 8 only; SubscriptOutOfRange when a pixel needs another
    /// one: with 0 or more than 9 levels at the first pixel, with 9 at the first reduction. Overflow when a
    /// leaf's sum does not fit 32 bits.
    void add(std::span<const std::uint8_t> pixels);

    /// The leaves in the order of their positions.
    std::vector<Leaf> leaves() const;

  private:
    using Position = std::uint32_t; // 0 is none, 1 is the root

    // The sums of a leaf, packed in pairs, so that a pixel takes two additions. They are never negative.
    struct Sums {
        std::uint64_t red_and_green = 0; // red in the lower half
        std::uint64_t blue_and_count = 0;

        Leaf unpacked() const;
    };

    struct alignas(64) Node {
        Sums sums;                       // of a leaf; others have counted no pixel
        std::array<Position, 8> child{}; // slot: red bit + 2 * green bit + 4 * blue bit; of a leaf, itself
        std::uint32_t taken = 0;         // a bit for each slot that has a child
        Position next = 0;               // in the list of reducible or of free nodes
    };

    // The child slots from the root down, three bits per level from the lowest up. The bits of one channel do
    // not depend on the others, so a table of 256 values per channel gives all paths.
    using Path = std::uint32_t;
    using ChannelPaths = std::array<Path, 256>;

    static ChannelPaths paths_of(float weight, int bit_of_slot);
    static ChannelPaths compute_paths(float weight);

    static std::size_t slot_of(Path path, int level) { return path >> 3 * (level - 1) & 7U; }

    Node& node(Position position) { return nodes_[position]; }

    bool is_harmless() const;
    void add_sums(Sums& totals, const Sums& sums) const;
    Node& near_node(Path path);
    Node& leaf_at(Path path);
    Position walk_down(Position at, Path path, int level, int last_level);
    Position grow(Position parent, Path path, int level);
    Position new_node();
    void free_node(Position position);
    bool would_collapse_to(int level) const;
    void enter_reducible(Position position, int level);
    bool reduce();

    std::int32_t maximum_;
    int levels_;
    ChannelPaths red_paths_;
    ChannelPaths green_paths_;
    ChannelPaths blue_paths_;
    std::vector<Node> nodes_;                  // position 0 is not used
    Position used_ = 2;                        // the next position never allocated
    std::array<Position, 9> reducible_head_{}; // levels 1 to 8
    std::uint32_t filled_lists_ = 0;           // a bit for each level whose list is not empty
    std::int32_t leaf_count_ = 0;
    std::int64_t pixel_count_ = 0;
    Position free_head_ = 0;

    // A cache of walks over the first levels: the node of the last of them or a leaf above it; 0 if not
    // walked yet.
    static constexpr int top_levels = 3;
    std::array<Position, 1 << 3 * top_levels> top_{};
};

} // namespace varnoth
