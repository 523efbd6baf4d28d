#include "colour/Octree.h"

#include <limits>

#include "base/RunTimeFailure.h"
#include "base/numbers.h"

namespace varnoth {

namespace {

constexpr Octree::Leaf no_pixels{};
constexpr int list_levels = 8;

// A pixel that passes a ninth split has either found its leaf or run out of lists.
constexpr int deepest_split = list_levels + 1;

// No sum of so many channel values leaves its 32 bits.
constexpr std::int32_t harmless_count = std::numeric_limits<std::int32_t>::max() / 255;

void count_pixel(Octree::Leaf& leaf, std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    if (leaf.PixelCount < harmless_count) {
        leaf.PixelCount += 1;
        leaf.SumR += red;
        leaf.SumG += green;
        leaf.SumB += blue;
        return;
    }
    leaf.PixelCount = checked_add(leaf.PixelCount, 1);
    leaf.SumR = checked_add(leaf.SumR, red);
    leaf.SumG = checked_add(leaf.SumG, green);
    leaf.SumB = checked_add(leaf.SumB, blue);
}

void add_sums(Octree::Leaf& totals, const Octree::Leaf& sums) {
    totals.SumR = checked_add(totals.SumR, sums.SumR);
    totals.SumG = checked_add(totals.SumG, sums.SumG);
    totals.SumB = checked_add(totals.SumB, sums.SumB);
    totals.PixelCount = checked_add(totals.PixelCount, sums.PixelCount);
}

} // namespace

Octree::Octree(std::int32_t maximum, std::uint8_t levels, const ChannelWeights& weights)
    : maximum_(maximum),
      levels_(levels),
      red_paths_(paths_of(weights.red, 0)),
      green_paths_(paths_of(weights.green, 1)),
      blue_paths_(paths_of(weights.blue, 2)),
      nodes_(2) {}

// Paths are the same in every tree of equal weights, and the weight is nearly always 1.
Octree::ChannelPaths Octree::paths_of(float weight, int bit_of_slot) {
    static const ChannelPaths unweighted = walked_paths(1.0F);
    ChannelPaths paths = weight == 1.0F ? unweighted : walked_paths(weight);
    for (Path& path : paths) {
        path <<= bit_of_slot;
    }
    return paths;
}

Octree::ChannelPaths Octree::walked_paths(float weight) {
    ChannelPaths paths{};
    for (std::size_t value = 0; value < paths.size(); ++value) {
        const float tested = static_cast<float>(value) * weight;
        int low = 0;
        int high = 255;
        for (int level = 0; level < deepest_split; ++level) {
            const int middle = round_to_even<std::uint8_t>(low / 2.0 + high / 2.0);
            // A value that equals the middle goes to the lower half.
            if (tested <= static_cast<float>(middle)) {
                high = middle;
            } else {
                low = middle;
                paths[value] |= Path{1} << (3 * level);
            }
        }
    }
    return paths;
}

void Octree::add(std::span<const std::uint8_t> pixels) {
    for (std::size_t at = 0; at + 4 <= pixels.size(); at += 4) {
        const std::uint8_t blue = pixels[at];
        const std::uint8_t green = pixels[at + 1];
        const std::uint8_t red = pixels[at + 2];
        const Position leaf = leaf_at(red_paths_[red] | green_paths_[green] | blue_paths_[blue]);
        count_pixel(node(leaf).sums, red, green, blue);
        while (leaf_count_ > maximum_ && reduce()) {
        }
    }
}

// The leaf of a path, made if it is missing.
Octree::Position Octree::leaf_at(Path path) {
    ShortCut& short_cut = short_cuts_[path % short_cuts_.size()];
    if (node(short_cut.position).lives != short_cut.lives) {
        const Position reached = walk_down(1, 1, short_cut_levels, path);
        short_cut = {reached, node(reached).lives};
    }
    return walk_down(short_cut.position, short_cut_levels + 1, deepest_split, path);
}

// From a node of the level above `level` to a leaf or to a node of the last level. What is missing is made.
Octree::Position Octree::walk_down(Position at, int level, int last_level, Path path) {
    while (!node(at).is_leaf && level <= last_level) {
        const std::size_t slot = path >> 3 * (level - 1) & 7U;
        const Position child = node(at).child[slot];
        at = child != 0 ? child : grow(at, slot, level);
        ++level;
    }
    return at;
}

Octree::Position Octree::grow(Position parent, std::size_t slot, int level) {
    const bool is_leaf = level == levels_ || would_collapse_to(level);
    const Position child = new_node();
    node(parent).child[slot] = child;
    node(child).is_leaf = is_leaf;
    node(child).sums = no_pixels;
    if (is_leaf) {
        ++leaf_count_;
    } else {
        enter_reducible(child, level);
    }
    return child;
}

// Whether a new node of this level may be made a leaf at once. The rule is to make a chain of nodes down to
// the last level and to reduce, deepest level first, while there are too many leaves. When the tree is full
// and this level's list is empty, and with it every deeper one, that reduction eats the chain, whose nodes
// have one child each and so do not lower the number of leaves, up to its first node. The other nodes of the
// chain go to the free list in the order in which they would be taken next, from that list or as new
// positions, so nothing tells that they were ever made.
bool Octree::would_collapse_to(int level) const {
    return leaf_count_ >= maximum_ && levels_ <= list_levels && level < levels_ &&
           reducible_head_[static_cast<std::size_t>(level)] == 0;
}

void Octree::enter_reducible(Position position, int level) {
    if (level > list_levels) {
        fail(Failure::SubscriptOutOfRange);
    }
    Position& head = reducible_head_[static_cast<std::size_t>(level)];
    node(position).next = head;
    head = position;
}

// Turns the node entered last in the deepest level that has any into a leaf for all that its children stood
// for. Its children are leaves: an inner one would stand in a deeper list.
bool Octree::reduce() {
    if (levels_ > list_levels) {
        fail(Failure::SubscriptOutOfRange);
    }
    int level = levels_;
    while (level > 0 && reducible_head_[static_cast<std::size_t>(level)] == 0) {
        --level;
    }
    if (level == 0) {
        return false;
    }
    Position& head = reducible_head_[static_cast<std::size_t>(level)];
    Node& reduced = node(head);
    head = reduced.next;

    Leaf totals;
    for (Position& child : reduced.child) {
        if (child != 0) {
            add_sums(totals, node(child).sums);
            free_node(child);
            --leaf_count_;
            child = 0;
        }
    }
    ++leaf_count_;
    reduced.sums = totals;
    reduced.is_leaf = true;
    return true;
}

void Octree::free_node(Position position) {
    Node& freed = node(position);
    freed.next = free_head_;
    freed.is_leaf = false;
    ++freed.lives;
    free_head_ = position;
}

// The node freed last, or else the next new position. Freed nodes have been leaves, so they have no children.
Octree::Position Octree::new_node() {
    if (free_head_ == 0) {
        nodes_.emplace_back();
        return static_cast<Position>(nodes_.size()) - 1;
    }
    const Position reused = free_head_;
    free_head_ = node(reused).next;
    return reused;
}

std::vector<Octree::Leaf> Octree::leaves() const {
    std::vector<Leaf> leaves;
    for (const Node& each : nodes_) {
        if (each.is_leaf) {
            leaves.push_back(each.sums);
        }
    }
    return leaves;
}

} // namespace varnoth
