#include "colour/Octree.h"

#include "base/RunTimeFailure.h"
#include "base/numbers.h"

namespace varnoth {

namespace {

constexpr Octree::Leaf no_pixels{};
constexpr int list_levels = 8;

// A pixel that passes a ninth split has either found its leaf or run out of lists.
constexpr int deepest_split = list_levels + 1;

void count_pixel(Octree::Leaf& leaf, std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
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

Octree::ChannelPaths Octree::paths_of(float weight, int bit_of_slot) {
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
                paths[value] |= Path{1} << (3 * level + bit_of_slot);
            }
        }
    }
    return paths;
}

void Octree::add(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    const Path path = red_paths_[red] | green_paths_[green] | blue_paths_[blue];
    KnownLeaf& known = known_leaf(path);
    if (known.path != path || known.reductions != reductions_) {
        known = {path, leaf_at(path), reductions_};
    }
    count_pixel(node(known.leaf).sums, red, green, blue);
    while (leaf_count_ > maximum_ && reduce()) {
    }
}

Octree::KnownLeaf& Octree::known_leaf(Path path) {
    constexpr Path spread = 0x9E3779B1; // multiplicative hashing: 2^32 by the golden ratio
    return known_leaves_[(path * spread) >> 22];
}

// Walks down from the root and makes what is missing.
Octree::Position Octree::leaf_at(Path path) {
    Position at = 1;
    for (int level = 1;; ++level, path >>= 3) {
        const std::size_t slot = path & 7U;
        Position child = node(at).child[slot];
        if (child == 0) {
            child = grow(at, slot, level);
        }
        if (node(child).is_leaf) {
            return child;
        }
        at = child;
    }
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
    ++reductions_;
    return true;
}

void Octree::free_node(Position position) {
    Node& freed = node(position);
    freed.next = free_head_;
    freed.is_leaf = false;
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
