#include "reference/OptimalPalette.h"

#include <array>
#include <cstddef>

#include "core/base/RunTimeFailure.h"
#include "core/base/numbers.h"

namespace varnoth::reference {

namespace {

struct OctreeNode {
    bool IsLeaf = false;
    bool InReducible = false;
    std::int32_t SumR = 0;
    std::int32_t SumG = 0;
    std::int32_t SumB = 0;
    std::int32_t PixelCount = 0;
    std::array<std::int32_t, 8> Child{};
    std::int32_t NextNode = 0;
};

struct Bounds {
    std::uint8_t low = 0;
    std::uint8_t high = 255;
};

struct Tree {
    std::vector<OctreeNode> OctreeNodes = std::vector<OctreeNode>(51); // positions 1 to 50
    std::int32_t NodeCount = 1;
    std::uint8_t NodeLevels = 0;
    std::int32_t FreeHead = 0;
    std::int32_t LeafCount = 0;
    std::array<std::int32_t, 8> heads{};
    float RWeight = 1;
    float GWeight = 1;
    float BWeight = 1;

    OctreeNode& node(std::int32_t position) { return OctreeNodes.at(static_cast<std::size_t>(position)); }

    std::int32_t& ReducibleHead(std::int32_t level) {
        if (level < 1 || level > 8) {
            fail(Failure::SubscriptOutOfRange);
        }
        return heads.at(static_cast<std::size_t>(level - 1));
    }

    void NewNode(std::int32_t& result) {
        NodeCount = NodeCount + 1;
        if (FreeHead == 0) {
            result = NodeCount;
            if (result > static_cast<std::int32_t>(OctreeNodes.size()) - 1) {
                OctreeNodes.resize(static_cast<std::size_t>(round_to_even<std::int32_t>(NodeCount * 1.1)) +
                                   1);
            }
        } else {
            result = FreeHead;
            FreeHead = node(result).NextNode;
            node(result).Child.fill(0);
        }
    }

    void FreeNode(std::int32_t i) {
        node(i).NextNode = FreeHead;
        FreeHead = i;
        node(i).IsLeaf = false;
        node(i).InReducible = false;
        NodeCount = NodeCount - 1;
    }

    static int split(Bounds& bounds, std::uint8_t value, float weight) {
        const auto middle = round_to_even<std::uint8_t>(bounds.low / 2.0 + bounds.high / 2.0);
        const float test = static_cast<float>(value) * weight;
        if (test <= static_cast<float>(middle)) {
            bounds.high = middle;
            return 0;
        }
        bounds.low = middle;
        return 1;
    }

    void AddColor(std::int32_t at, std::int32_t level, Bounds r, Bounds g, Bounds b, std::uint8_t red,
                  std::uint8_t green, std::uint8_t blue) {
        const int red_bit = split(r, red, RWeight);
        const int green_bit = split(g, green, GWeight);
        const int blue_bit = split(b, blue, BWeight);
        const auto slot = static_cast<std::size_t>(red_bit + 2 * green_bit + 4 * blue_bit);
        std::int32_t c = node(at).Child[slot];
        if (c == 0) {
            NewNode(c);
            node(at).Child[slot] = c;
            node(at).PixelCount = node(at).PixelCount + 1;
            node(c).NextNode = 0;
            node(c).IsLeaf = level == NodeLevels;
            node(c).SumR = 0;
            node(c).SumG = 0;
            node(c).SumB = 0;
            node(c).PixelCount = 0;
        }
        if (node(c).IsLeaf) {
            if (node(c).PixelCount == 0) {
                LeafCount = LeafCount + 1;
            }
            node(c).PixelCount = checked_add(node(c).PixelCount, 1);
            node(c).SumR = checked_add(node(c).SumR, red);
            node(c).SumG = checked_add(node(c).SumG, green);
            node(c).SumB = checked_add(node(c).SumB, blue);
            return;
        }
        if (!node(c).InReducible) {
            node(c).NextNode = ReducibleHead(level);
            ReducibleHead(level) = c;
            node(c).InReducible = true;
        }
        AddColor(c, level + 1, r, g, b, red, green, blue);
    }

    bool ReduceColors() {
        std::int32_t level = NodeLevels;
        while (level >= 1 && ReducibleHead(level) == 0) {
            level = level - 1;
        }
        if (level < 1) {
            return false;
        }
        const std::int32_t n = ReducibleHead(level);
        ReducibleHead(level) = node(n).NextNode;
        std::int32_t red = 0;
        std::int32_t green = 0;
        std::int32_t blue = 0;
        std::int32_t count = 0;
        for (std::size_t slot = 0; slot < 8; ++slot) {
            const std::int32_t child = node(n).Child[slot];
            if (child != 0) {
                red = checked_add(red, node(child).SumR);
                green = checked_add(green, node(child).SumG);
                blue = checked_add(blue, node(child).SumB);
                count = checked_add(count, node(child).PixelCount);
                FreeNode(child);
                LeafCount = LeafCount - 1;
                node(n).Child[slot] = 0;
            }
        }
        LeafCount = LeafCount + 1;
        node(n).SumR = red;
        node(n).SumG = green;
        node(n).SumB = blue;
        node(n).PixelCount = count;
        node(n).IsLeaf = true;
        return true;
    }
};

} // namespace

std::optional<OptimalPalette> optimal_palette(const cDIB& image, std::int32_t maximum, std::int32_t levels,
                                              float red_weight, float green_weight, float blue_weight) {
    if (image.Bpp() != 32) {
        return std::nullopt;
    }
    Tree tree;
    tree.RWeight = red_weight;
    tree.GWeight = green_weight;
    tree.BWeight = blue_weight;
    tree.NodeLevels = narrow<std::uint8_t>(levels);

    OptimalPalette palette;
    for (std::int32_t y = 0; y < image.Height(); ++y) {
        for (std::int32_t x = 0; x < image.Width(); ++x) {
            const std::uint8_t* pixel = image.lpBits() + y * image.BytesPerScanline() + 4 * x;
            tree.AddColor(1, 1, {}, {}, {}, pixel[2], pixel[1], pixel[0]);
            while (tree.LeafCount > maximum) {
                if (!tree.ReduceColors()) {
                    break;
                }
                palette.reductions = palette.reductions + 1;
            }
        }
    }
    for (std::size_t position = 1; position < tree.OctreeNodes.size(); ++position) {
        const OctreeNode& node = tree.OctreeNodes[position];
        if (node.IsLeaf) {
            check_subscript(palette.colors.size(), 256U);
            const double count = node.PixelCount;
            palette.colors.push_back({round_to_even<std::uint8_t>(node.SumB / count),
                                      round_to_even<std::uint8_t>(node.SumG / count),
                                      round_to_even<std::uint8_t>(node.SumR / count), 0});
        }
    }
    return palette;
}

} // namespace varnoth::reference
