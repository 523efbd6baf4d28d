#include "core/quantize/Octree.h"

#include <bit>
#include <limits>

#include "core/base/RunTimeFailure.h"
#include "core/base/numbers.h"

namespace varnoth {

namespace {

constexpr int list_levels = 8;

// After a ninth split a pixel has either found its leaf or needs a list that does not exist.
constexpr int deepest_split = list_levels + 1;

// Enough nodes for a tree of 256 leaves.
constexpr std::size_t first_nodes = 1024;

constexpr std::uint64_t packed_pair(std::int32_t low, std::int32_t high) {
    return static_cast<std::uint32_t>(low) | std::uint64_t{static_cast<std::uint32_t>(high)} << 32;
}

constexpr std::int32_t low_half(std::uint64_t pair) {
    return static_cast<std::int32_t>(pair & 0xFFFFFFFF);
}

constexpr std::int32_t high_half(std::uint64_t pair) {
    return static_cast<std::int32_t>(pair >> 32);
}

// Not inlined: only trees of more than 8 million pixels need it.
[[gnu::noinline]] std::uint64_t checked_pair(std::uint64_t a, std::uint64_t b) {
    return packed_pair(checked_add(low_half(a), low_half(b)), checked_add(high_half(a), high_half(b)));
}

} // namespace

Octree::Octree(std::int32_t maximum, std::uint8_t levels, const ChannelWeights& weights)
    : maximum_(maximum),
      levels_(levels),
      red_paths_(paths_of(weights.red, 0)),
      green_paths_(paths_of(weights.green, 1)),
      blue_paths_(paths_of(weights.blue, 2)),
      nodes_(first_nodes) {}

// Paths depend on the weight only, which is nearly always 1, so those are computed once.
Octree::ChannelPaths Octree::paths_of(float weight, int bit_of_slot) {
    static const ChannelPaths unweighted = compute_paths(1.0F);
    ChannelPaths paths = weight == 1.0F ? unweighted : compute_paths(weight);
    for (Path& path : paths) {
        path <<= bit_of_slot;
    }
    return paths;
}

Octree::ChannelPaths Octree::compute_paths(float weight) {
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

Octree::Leaf Octree::Sums::unpacked() const {
    return {low_half(red_and_green), high_half(red_and_green), low_half(blue_and_count),
            high_half(blue_and_count)};
}

void Octree::add(std::span<const std::uint8_t> pixels) {
    pixel_count_ += std::ssize(pixels) / 4;
    // The least value of a leaf that can be added to directly.
    const std::uint64_t least = is_harmless() ? packed_pair(0, 1) : std::numeric_limits<std::uint64_t>::max();
    for (std::size_t at = 0; at + 4 <= pixels.size(); at += 4) {
        const std::uint8_t blue = pixels[at];
        const std::uint8_t green = pixels[at + 1];
        const std::uint8_t red = pixels[at + 2];
        const Path path = red_paths_[red] | green_paths_[green] | blue_paths_[blue];
        Sums& near = near_node(path).sums;
        const Sums pixel{packed_pair(red, green), packed_pair(blue, 1)};
        if (near.blue_and_count >= least) {
            near.red_and_green += pixel.red_and_green;
            near.blue_and_count += pixel.blue_and_count;
            continue;
        }
        add_sums(leaf_at(path).sums, pixel);
        while (leaf_count_ > maximum_ && reduce()) {
        }
    }
}

// So few pixels cannot overflow a 32-bit sum.
bool Octree::is_harmless() const {
    return pixel_count_ <= std::numeric_limits<std::int32_t>::max() / 255;
}

void Octree::add_sums(Sums& totals, const Sums& sums) const {
    if (is_harmless()) {
        totals.red_and_green += sums.red_and_green;
        totals.blue_and_count += sums.blue_and_count;
        return;
    }
    totals = {checked_pair(totals.red_and_green, sums.red_and_green),
              checked_pair(totals.blue_and_count, sums.blue_and_count)};
}

// The node that the path reaches three levels below the top, where most leaves are: a leaf, an inner node or
// position 0.
Octree::Node& Octree::near_node(Path path) {
    Position at = top_[path % top_.size()];
    at = node(at).child[slot_of(path, top_levels + 1)];
    at = node(at).child[slot_of(path, top_levels + 2)];
    at = node(at).child[slot_of(path, top_levels + 3)];
    return node(at);
}

// The leaf of a path, created if missing. The children of a leaf are the leaf itself, so a walk stays on it.
Octree::Node& Octree::leaf_at(Path path) {
    Position& on_top = top_[path % top_.size()];
    if (on_top == 0) {
        on_top = walk_down(1, path, 1, top_levels);
    }
    return node(walk_down(on_top, path, top_levels + 1, deepest_split));
}

// Walks from a node of the level above `level` to the node of the last level. Creates missing nodes.
Octree::Position Octree::walk_down(Position at, Path path, int level, int last_level) {
    for (; level <= last_level; ++level) {
        const Position child = node(at).child[slot_of(path, level)];
        at = child != 0 ? child : grow(at, path, level);
    }
    return at;
}

Octree::Position Octree::grow(Position parent, Path path, int level) {
    const bool is_leaf = level == levels_ || would_collapse_to(level);
    const std::size_t slot = slot_of(path, level);
    const Position child = new_node();
    node(parent).child[slot] = child;
    node(parent).taken |= 1U << slot;
    if (is_leaf) {
        node(child).child.fill(child);
        ++leaf_count_;
    } else {
        enter_reducible(child, level);
    }
    return child;
}

// Whether a new node of this level can be made a leaf at once. The algorithm creates a chain of nodes down to
// the last level and reduces, deepest level first, while there are too many leaves. When the tree is full and
// the lists of all deeper levels are empty, that reduction would consume the chain up to this node: each node
// of the chain has one child, so reducing it does not lower the number of leaves. The freed nodes would enter
// the free list in the order in which they are allocated next, so skipping the chain gives the same
// positions.
bool Octree::would_collapse_to(int level) const {
    return leaf_count_ >= maximum_ && levels_ <= list_levels && level < levels_ &&
           reducible_head_[static_cast<std::size_t>(level) + 1] == 0;
}

void Octree::enter_reducible(Position position, int level) {
    if (level > list_levels) {
        fail(Failure::SubscriptOutOfRange);
    }
    Position& head = reducible_head_[static_cast<std::size_t>(level)];
    node(position).next = head;
    head = position;
    filled_lists_ |= 1U << level;
}

// Merges the children of the node entered last in the deepest non-empty list into that node, which becomes a
// leaf. All its children are leaves: an inner child would be in a deeper list.
bool Octree::reduce() {
    if (levels_ > list_levels) {
        fail(Failure::SubscriptOutOfRange);
    }
    if (filled_lists_ == 0) {
        return false;
    }
    const auto level = static_cast<int>(std::bit_width(filled_lists_)) - 1;
    Position& head = reducible_head_[static_cast<std::size_t>(level)];
    const Position position = head;
    Node& reduced = node(position);
    head = reduced.next;
    if (head == 0) {
        filled_lists_ &= ~(1U << level);
    }

    Sums totals;
    for (std::uint32_t taken = reduced.taken; taken != 0; taken &= taken - 1) {
        const Position child = reduced.child[static_cast<std::size_t>(std::countr_zero(taken))];
        add_sums(totals, node(child).sums);
        free_node(child);
        --leaf_count_;
    }
    ++leaf_count_;
    reduced.sums = totals;
    reduced.child.fill(position);
    if (level < top_levels) {
        top_.fill(0); // some entries may refer to the freed children
    }
    return true;
}

void Octree::free_node(Position position) {
    Node& freed = node(position);
    freed.sums = {};
    freed.child.fill(0);
    freed.taken = 0;
    freed.next = free_head_;
    free_head_ = position;
}

// The node freed last, or the next unused position.
Octree::Position Octree::new_node() {
    if (free_head_ == 0) {
        if (used_ == nodes_.size()) {
            nodes_.resize(2 * nodes_.size());
        }
        return used_++;
    }
    const Position reused = free_head_;
    free_head_ = node(reused).next;
    return reused;
}

std::vector<Octree::Leaf> Octree::leaves() const {
    std::vector<Leaf> leaves;
    for (const Node& each : nodes_) {
        if (high_half(each.sums.blue_and_count) != 0) {
            leaves.push_back(each.sums.unpacked());
        }
    }
    return leaves;
}

} // namespace varnoth
