// The tree behind the adaptive palette: octree colour quantisation (Gervautz and Purgathofer, "A simple
// method for color quantization: octree quantization", 1988) in which each level splits a colour box at the
// midpoint of its present bounds, reduced while pixels come in. The order in which positions are used and
// used again is part of the result, because palettes list the leaves by position.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace varnoth {

/// What the splits see of a channel: its value times this.
struct ChannelWeights {
    float red = 1.0F;
    float green = 1.0F;
    float blue = 1.0F;
};

class Octree {
  public:
    /// Sums and count of the pixels that one leaf stands for.
    struct Leaf {
        std::int32_t SumR = 0;
        std::int32_t SumG = 0;
        std::int32_t SumB = 0;
        std::int32_t PixelCount = 0;
    };

    /// A tree of `levels` levels that is held at `maximum` leaves. The root never becomes a leaf, so up to
    /// eight leaves stay however low the maximum is.
    Octree(std::int32_t maximum, std::uint8_t levels, const ChannelWeights& weights);

    /// Counts the pixels, 4 bytes each: blue, green, red and one that plays no part. Reduces after each one.
    /// There are lists of reducible nodes for the levels 1 to 8 only: SubscriptOutOfRange when a pixel needs
    /// another one, that is with 0 or more than 9 levels at once, with 9 at the first reduction. Overflow
    /// when a leaf's sums leave their 32 bits.
    void add(std::span<const std::uint8_t> pixels);

    /// The leaves in the order of their positions.
    std::vector<Leaf> leaves() const;

  private:
    using Position = std::int32_t; // 0 stands for none, 1 is the root

    struct alignas(64) Node {
        Leaf sums;
        std::array<Position, 8> child{}; // slot: red bit + 2 * green bit + 4 * blue bit
        Position next = 0;               // in the list of reducible or of free nodes
        std::uint32_t lives = 0;         // how often it was freed
        bool is_leaf = false;
    };

    // Three bits a level from the lowest up, the child slots from the root down. Of the bounds and bits of
    // one channel, no other channel plays a part, so 256 values a channel tell all paths beforehand.
    using Path = std::uint32_t;
    using ChannelPaths = std::array<Path, 256>;

    static ChannelPaths paths_of(float weight, int bit_of_slot);
    static ChannelPaths walked_paths(float weight);

    Node& node(Position position) { return nodes_[static_cast<std::size_t>(position)]; }

    Position leaf_at(Path path);
    Position walk_down(Position at, int level, int last_level, Path path);
    Position grow(Position parent, std::size_t slot, int level);
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
    std::array<Position, 9> reducible_head_{}; // levels 1 to 8
    std::int32_t leaf_count_ = 0;
    Position free_head_ = 0;

    // Where the first levels of a path lead: to the node of the last of them, or to a leaf above it. Such a
    // node may become a leaf, but until it is freed no other node takes its place.
    static constexpr int short_cut_levels = 4;

    struct ShortCut {
        Position position = 0;
        std::uint32_t lives = 1; // position 0 is never freed, so this leads nowhere
    };

    std::array<ShortCut, 1 << 3 * short_cut_levels> short_cuts_{};
};

} // namespace varnoth
