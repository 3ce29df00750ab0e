// All matches of every place are found first. Then the cheapest way through them is worked out, by the lengths that the
// codes of the way before had, a few times over. Last, the way is cut into blocks where that makes it shorter. What
// codes only make longer is stored as it is.
#include "formats/png/deflate.h"

#include "base/byte_sink.h"

#include <zlib.h> // adler32

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <queue>

namespace stage {
namespace {

constexpr std::size_t kShortest = 3; // of a match
constexpr std::size_t kLongest = 258;
constexpr std::size_t kWindow = 32768; // farthest distance
constexpr std::size_t kLiterals = 286; // 256 bytes, the end of a block, 29 lengths
constexpr std::size_t kDistances = 30;
constexpr std::size_t kEnd = 256;

// A symbol stands for a run of values, of which the extra bits choose one.
struct Symbol {
    std::uint16_t symbol = 0;
    std::uint16_t extraBits = 0;
    std::uint32_t extra = 0;
};

// Four symbols share each number of extra bits, beginning with the second group; 258 has a symbol of its own.
Symbol lengthSymbol(std::size_t length) {
    if (length == kLongest)
        return {285, 0, 0};
    const auto value = static_cast<std::uint32_t>(length - kShortest);
    if (value < 8)
        return {static_cast<std::uint16_t>(257 + value), 0, 0};
    const auto bits = static_cast<std::uint16_t>(std::bit_width(value) - 3);
    return {static_cast<std::uint16_t>(257 + bits * 4 + (value >> bits)), bits, value & ((1u << bits) - 1)};
}

// Two symbols share each number of extra bits.
Symbol distanceSymbol(std::size_t distance) {
    const auto value = static_cast<std::uint32_t>(distance - 1);
    if (value < 4)
        return {static_cast<std::uint16_t>(value), 0, 0};
    const auto bits = static_cast<std::uint16_t>(std::bit_width(value) - 2);
    return {static_cast<std::uint16_t>(bits * 2 + (value >> bits)), bits, value & ((1u << bits) - 1)};
}

struct Match {
    std::uint16_t length;
    std::uint16_t distance; // 32768 is stored as 32768
};

// For every place the matches that begin there, ever longer ones, each at its nearest distance.
class MatchTable {
public:
    explicit MatchTable(std::span<const std::uint8_t> bytes) : bytes_(bytes), before_(bytes.size(), kNone) {
        std::vector<std::uint32_t> heads(kHeads, kNone);
        starts_.reserve(bytes.size() + 1);
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            starts_.push_back(matches_.size());
            if (at + kShortest > bytes.size())
                continue;
            std::uint32_t& head = heads[hashAt(at)];
            findAt(at, head);
            before_[at] = head;
            head = static_cast<std::uint32_t>(at);
        }
        starts_.push_back(matches_.size());
    }

    std::span<const Match> at(std::size_t place) const {
        return std::span(matches_).subspan(starts_[place], starts_[place + 1] - starts_[place]);
    }

private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;
    static constexpr std::size_t kHeads = 1 << 15;

    std::size_t hashAt(std::size_t at) const {
        const std::uint32_t three =
            bytes_[at] | std::uint32_t{bytes_[at + 1]} << 8 | std::uint32_t{bytes_[at + 2]} << 16;
        return three * 2654435761u >> 17; // Knuth's multiplier, 2^32 divided by the golden ratio; 15 bits stay
    }

    void findAt(std::size_t at, std::uint32_t candidate) {
        constexpr int kMostTries = 64; // places with the same hash
        const std::size_t most = std::min(kLongest, bytes_.size() - at);
        std::size_t longest = kShortest - 1;
        for (int tries = 0; tries < kMostTries && candidate != kNone && at - candidate <= kWindow; ++tries) {
            const std::uint8_t* here = bytes_.data() + at;
            const std::uint8_t* there = bytes_.data() + candidate;
            if (there[longest] == here[longest]) {
                const auto length = static_cast<std::size_t>(std::mismatch(here, here + most, there).first - here);
                if (length > longest) {
                    longest = length;
                    matches_.push_back(
                        {static_cast<std::uint16_t>(length), static_cast<std::uint16_t>(at - candidate)});
                }
                if (longest == most)
                    return;
            }
            candidate = before_[candidate];
        }
    }

    std::span<const std::uint8_t> bytes_;
    std::vector<std::uint32_t> before_; // the place before with the same hash
    std::vector<Match> matches_;
    std::vector<std::size_t> starts_; // of each place's matches
};

// A byte (length 1) or a match.
struct Token {
    std::uint16_t length;
    std::uint16_t value; // the byte, or the distance
};

struct Counts {
    std::array<std::uint32_t, kLiterals> literals{};
    std::array<std::uint32_t, kDistances> distances{};
};

Counts countsOf(std::span<const Token> tokens) {
    Counts counts;
    for (const Token& token : tokens) {
        if (token.length == 1) {
            ++counts.literals[token.value];
        } else {
            ++counts.literals[lengthSymbol(token.length).symbol];
            ++counts.distances[distanceSymbol(token.value).symbol];
        }
    }
    ++counts.literals[kEnd];
    return counts;
}

// Lengths of the codes, at most `limit` bits, that make symbols of these counts shortest; 0 for what does not occur.
std::vector<std::uint8_t> codeLengths(std::span<const std::uint32_t> counts, unsigned limit) {
    struct Node {
        std::uint64_t count;
        int left, right;
    };
    std::vector<Node> nodes;
    std::vector<std::size_t> symbols;
    using Entry = std::pair<std::uint64_t, int>;
    std::priority_queue<Entry, std::vector<Entry>, std::greater<>> open;
    for (std::size_t i = 0; i < counts.size(); ++i)
        if (counts[i] > 0) {
            open.push({counts[i], static_cast<int>(nodes.size())});
            nodes.push_back({counts[i], -1, -1});
            symbols.push_back(i);
        }
    std::vector<std::uint8_t> lengths(counts.size(), 0);
    if (symbols.size() == 1)
        lengths[symbols[0]] = 1;
    if (symbols.size() < 2)
        return lengths;
    while (open.size() > 1) {
        const Entry a = open.top();
        open.pop();
        const Entry b = open.top();
        open.pop();
        open.push({a.first + b.first, static_cast<int>(nodes.size())});
        nodes.push_back({a.first + b.first, a.second, b.second});
    }
    std::vector<unsigned> depths(nodes.size(), 0);
    for (std::size_t i = nodes.size(); i-- > symbols.size();)
        for (const int child : {nodes[i].left, nodes[i].right})
            depths[static_cast<std::size_t>(child)] = depths[i] + 1;
    // Codes that are too long are cut, and rarer ones made longer until all of them fit again. What that leaves unused
    // goes to the most frequent ones that it is enough for: a set of codes must be complete.
    const std::uint64_t room = std::uint64_t{1} << limit;
    const auto share = [limit](unsigned depth) { return std::uint64_t{1} << (limit - depth); };
    std::uint64_t used = 0;
    for (std::size_t i = 0; i < symbols.size(); ++i) {
        depths[i] = std::min(depths[i], limit);
        used += share(depths[i]);
    }
    while (used > room) {
        std::size_t best = symbols.size();
        for (std::size_t i = 0; i < symbols.size(); ++i)
            if (depths[i] < limit && (best == symbols.size() || depths[i] > depths[best] ||
                                      (depths[i] == depths[best] && nodes[i].count < nodes[best].count)))
                best = i;
        used -= share(++depths[best]);
    }
    while (used < room) {
        std::size_t best = symbols.size();
        for (std::size_t i = 0; i < symbols.size(); ++i)
            if (share(depths[i]) <= room - used && (best == symbols.size() || nodes[i].count > nodes[best].count))
                best = i;
        used += share(depths[best]--);
    }
    for (std::size_t i = 0; i < symbols.size(); ++i)
        lengths[symbols[i]] = static_cast<std::uint8_t>(depths[i]);
    return lengths;
}

// What every symbol costs in bits, with its extra bits.
struct Costs {
    std::array<float, 256> bytes{};
    std::array<float, kLongest + 1> lengths{};
    std::array<float, kDistances> distances{};

    // From how often the symbols came; what did not come costs as if it had come once.
    explicit Costs(const Counts& counts) {
        const auto bits = [](std::uint32_t count, double total) {
            return static_cast<float>(std::log2(total / std::max(count, 1u)));
        };
        double literals = 0;
        double distant = 0;
        for (const std::uint32_t count : counts.literals)
            literals += count;
        for (const std::uint32_t count : counts.distances)
            distant += count;
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = bits(counts.literals[i], literals);
        for (std::size_t i = kShortest; i <= kLongest; ++i) {
            const Symbol symbol = lengthSymbol(i);
            lengths[i] = bits(counts.literals[symbol.symbol], literals) + static_cast<float>(symbol.extraBits);
        }
        for (std::size_t i = 0; i < distances.size(); ++i)
            distances[i] = bits(counts.distances[i], std::max(distant, 1.0)) +
                           static_cast<float>(i < 4 ? 0 : i / 2 - 1); // extra bits
    }
};

// The first way: at each place the longest match.
std::vector<Token> greedyTokens(std::span<const std::uint8_t> bytes, const MatchTable& table) {
    std::vector<Token> tokens;
    for (std::size_t at = 0; at < bytes.size();) {
        const auto matches = table.at(at);
        if (matches.empty())
            tokens.push_back({1, bytes[at]});
        else
            tokens.push_back({matches.back().length, matches.back().distance});
        at += tokens.back().length;
    }
    return tokens;
}

std::vector<Token> cheapestTokens(std::span<const std::uint8_t> bytes, const MatchTable& table, const Costs& costs) {
    std::vector<float> reached(bytes.size() + 1, std::numeric_limits<float>::max());
    std::vector<Token> last(bytes.size() + 1); // the token that leads to each place
    reached[0] = 0;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const auto reach = [&](std::size_t place, float cost, Token token) {
            if (cost < reached[place]) {
                reached[place] = cost;
                last[place] = token;
            }
        };
        reach(at + 1, reached[at] + costs.bytes[bytes[at]], {1, bytes[at]});
        const auto matches = table.at(at);
        // Inside long runs the longest match is as good as any, and there are many places that would try all lengths.
        const bool isInRun = !matches.empty() && matches.back().length == kLongest;
        std::size_t length = isInRun ? kLongest : kShortest;
        for (const Match& match : matches) {
            const float start = reached[at] + costs.distances[distanceSymbol(match.distance).symbol];
            for (; length <= match.length; ++length)
                reach(at + length, start + costs.lengths[length], {static_cast<std::uint16_t>(length), match.distance});
        }
    }
    std::vector<Token> tokens;
    for (std::size_t at = bytes.size(); at > 0; at -= tokens.back().length)
        tokens.push_back(last[at]);
    std::ranges::reverse(tokens);
    return tokens;
}

// Bits, the lowest first.
class BitWriter {
public:
    void put(std::uint32_t value, unsigned bits) {
        pending_ |= std::uint64_t{value} << count_;
        for (count_ += bits; count_ >= 8; count_ -= 8, pending_ >>= 8)
            bytes.push_back(static_cast<std::uint8_t>(pending_));
    }
    void finish() {
        if (count_ > 0)
            put(0, 8 - count_);
    }

    Bytes bytes;

private:
    std::uint64_t pending_ = 0;
    unsigned count_ = 0;
};

// Codes in the order of their lengths, with their bits turned round, because codes begin with the highest bit.
std::vector<std::uint32_t> codesOf(std::span<const std::uint8_t> lengths) {
    std::vector<std::uint32_t> codes(lengths.size());
    std::uint32_t next = 0;
    for (unsigned bits = 1; bits < 16; ++bits, next <<= 1)
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            if (lengths[i] != bits)
                continue;
            for (unsigned b = 0; b < bits; ++b)
                codes[i] |= (next >> b & 1u) << (bits - 1 - b);
            ++next;
        }
    return codes;
}

// The code lengths of a block as they are sent: lengths themselves, repetitions (16) and runs of zeros (17, 18).
std::vector<Symbol> runsOf(std::span<const std::uint8_t> lengths) {
    std::vector<Symbol> runs;
    for (std::size_t i = 0; i < lengths.size();) {
        std::size_t end = i + 1;
        while (end < lengths.size() && lengths[end] == lengths[i])
            ++end;
        std::size_t count = end - i;
        const std::uint8_t length = lengths[i];
        i = end;
        while (length == 0 && count >= 3) {
            const std::size_t zeros = std::min<std::size_t>(count, 138);
            const bool isShort = zeros < 11;
            runs.push_back({static_cast<std::uint16_t>(isShort ? 17 : 18), static_cast<std::uint16_t>(isShort ? 3 : 7),
                            static_cast<std::uint32_t>(zeros - (isShort ? 3 : 11))});
            count -= zeros;
        }
        if (length != 0) {
            runs.push_back({length, 0, 0});
            --count;
        }
        while (length != 0 && count >= 3) {
            const std::size_t same = std::min<std::size_t>(count, 6);
            runs.push_back({16, 2, static_cast<std::uint32_t>(same - 3)});
            count -= same;
        }
        runs.insert(runs.end(), count, {length, 0, 0});
    }
    return runs;
}

// The head of a block of its own codes, and the codes.
class Block {
public:
    explicit Block(std::span<const Token> tokens) : tokens_(tokens) {
        constexpr unsigned kLimit = 15;
        const Counts counts = countsOf(tokens);
        literals_ = codeLengths(counts.literals, kLimit);
        distances_ = codeLengths(counts.distances, kLimit);
        while (literals_.size() > kEnd + 1 && literals_.back() == 0)
            literals_.pop_back();
        while (distances_.size() > 1 && distances_.back() == 0)
            distances_.pop_back();
        std::vector<std::uint8_t> all = literals_;
        all.insert(all.end(), distances_.begin(), distances_.end());
        runs_ = runsOf(all);
        std::array<std::uint32_t, 19> runCounts{};
        for (const Symbol& run : runs_)
            ++runCounts[run.symbol];
        runLengths_ = codeLengths(runCounts, 7);
        sentLengths_ = kOrder.size();
        while (sentLengths_ > 4 && runLengths_[kOrder[sentLengths_ - 1]] == 0)
            --sentLengths_;
        bits_ = kKindBits + 14 + sentLengths_ * 3 + contentBits(counts);
        for (const Symbol& run : runs_)
            bits_ += runLengths_[run.symbol] + run.extraBits;
        preferFixedCodes(counts);
    }

    std::uint64_t bits() const { return bits_; }

    void write(BitWriter& out, bool isLast) const {
        constexpr std::uint32_t kFixedCodes = 1;
        constexpr std::uint32_t kOwnCodes = 2;
        out.put(isLast ? 1 : 0, 1);
        out.put(isFixed_ ? kFixedCodes : kOwnCodes, 2);
        if (!isFixed_)
            writeCodes(out);
        const std::vector<std::uint32_t> codes = codesOf(literals_);
        const std::vector<std::uint32_t> distanceCodes = codesOf(distances_);
        for (const Token& token : tokens_) {
            if (token.length == 1) {
                out.put(codes[token.value], literals_[token.value]);
                continue;
            }
            put(out, lengthSymbol(token.length), codes, literals_);
            put(out, distanceSymbol(token.value), distanceCodes, distances_);
        }
        out.put(codes[kEnd], literals_[kEnd]);
    }

private:
    static constexpr std::uint64_t kKindBits = 3;

    void writeCodes(BitWriter& out) const {
        out.put(static_cast<std::uint32_t>(literals_.size() - 257), 5);
        out.put(static_cast<std::uint32_t>(distances_.size() - 1), 5);
        out.put(static_cast<std::uint32_t>(sentLengths_ - 4), 4);
        for (std::size_t i = 0; i < sentLengths_; ++i)
            out.put(runLengths_[kOrder[i]], 3);
        const std::vector<std::uint32_t> runCodes = codesOf(runLengths_);
        for (const Symbol& run : runs_)
            put(out, run, runCodes, runLengths_);
    }

    // Of the symbols and their extra bits.
    std::uint64_t contentBits(const Counts& counts) const {
        std::uint64_t bits = 0;
        for (std::size_t i = 0; i < std::min(literals_.size(), kLiterals); ++i)
            bits += std::uint64_t{counts.literals[i]} * (literals_[i] + extraBitsOfLength(i));
        for (std::size_t i = 0; i < distances_.size(); ++i)
            bits += std::uint64_t{counts.distances[i]} * (distances_[i] + (i < 4 ? 0 : i / 2 - 1));
        return bits;
    }

    // The codes of RFC 1951 that need not be sent, where that is shorter.
    void preferFixedCodes(const Counts& counts) {
        Block fixed;
        fixed.tokens_ = tokens_;
        fixed.isFixed_ = true;
        fixed.literals_.assign(288, 8);
        std::fill_n(fixed.literals_.begin() + 144, 112, std::uint8_t{9});
        std::fill_n(fixed.literals_.begin() + 256, 24, std::uint8_t{7});
        fixed.distances_.assign(kDistances, 5);
        fixed.bits_ = kKindBits + fixed.contentBits(counts);
        if (fixed.bits_ < bits_)
            *this = std::move(fixed);
    }

    // The order in which RFC 1951 sends the lengths of the lengths' codes.
    static constexpr std::array<std::uint8_t, 19> kOrder = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                            11, 4,  12, 3, 13, 2, 14, 1, 15};

    Block() = default;

    static std::size_t extraBitsOfLength(std::size_t symbol) {
        return symbol < 265 || symbol == 285 ? 0 : (symbol - 261) / 4;
    }
    static void put(BitWriter& out, const Symbol& symbol, std::span<const std::uint32_t> codes,
                    std::span<const std::uint8_t> lengths) {
        out.put(codes[symbol.symbol], lengths[symbol.symbol]);
        out.put(symbol.extra, symbol.extraBits);
    }

    std::span<const Token> tokens_;
    std::vector<std::uint8_t> literals_;
    std::vector<std::uint8_t> distances_;
    std::vector<std::uint8_t> runLengths_;
    std::vector<Symbol> runs_;
    std::size_t sentLengths_ = 0;
    bool isFixed_ = false;
    std::uint64_t bits_ = 0;
};

// Halves as long as two blocks are shorter than one.
void cutIntoBlocks(std::span<const Token> tokens, std::vector<Block>& blocks) {
    constexpr std::size_t kFewTokens = 1024;
    Block whole(tokens);
    if (tokens.size() >= kFewTokens) {
        const std::size_t half = tokens.size() / 2;
        if (Block(tokens.first(half)).bits() + Block(tokens.subspan(half)).bits() < whole.bits()) {
            cutIntoBlocks(tokens.first(half), blocks);
            cutIntoBlocks(tokens.subspan(half), blocks);
            return;
        }
    }
    blocks.push_back(std::move(whole));
}

Bytes coded(std::span<const std::uint8_t> bytes) {
    constexpr int kWays = 3; // later ones change next to nothing
    const MatchTable table(bytes);
    std::vector<Token> tokens = greedyTokens(bytes, table);
    std::uint64_t bits = Block(tokens).bits();
    Counts counts = countsOf(tokens);
    for (int way = 0; way < kWays; ++way) {
        std::vector<Token> cheaper = cheapestTokens(bytes, table, Costs(counts));
        counts = countsOf(cheaper);
        const std::uint64_t size = Block(cheaper).bits();
        if (size < bits) {
            bits = size;
            tokens = std::move(cheaper);
        }
    }
    std::vector<Block> blocks;
    cutIntoBlocks(tokens, blocks);
    BitWriter out;
    for (const Block& block : blocks)
        block.write(out, &block == &blocks.back());
    out.finish();
    return std::move(out.bytes);
}

// Blocks without codes, for noise that codes would make longer.
constexpr std::size_t kLongestStored = 65535;
constexpr std::size_t kStoredHead = 5;

std::size_t storedSize(std::size_t bytes) {
    return bytes + kStoredHead * std::max<std::size_t>(1, (bytes + kLongestStored - 1) / kLongestStored);
}

Bytes stored(std::span<const std::uint8_t> bytes) {
    BitWriter out;
    do {
        const std::span<const std::uint8_t> part = bytes.first(std::min(bytes.size(), kLongestStored));
        bytes = bytes.subspan(part.size());
        const auto length = static_cast<std::uint32_t>(part.size());
        out.put(bytes.empty() ? 1 : 0, 8); // kind 0, up to a whole byte
        out.put(length, 16);
        out.put(~length & 0xFFFF, 16);
        out.bytes.insert(out.bytes.end(), part.begin(), part.end());
    } while (!bytes.empty());
    return std::move(out.bytes);
}

} // namespace

std::vector<std::uint8_t> deflated(std::span<const std::uint8_t> bytes) {
    Bytes result = {0x78, 0xDA}; // deflate with a window of 32 KiB, compressed with care
    Bytes blocks = coded(bytes);
    if (blocks.size() > storedSize(bytes.size()))
        blocks = stored(bytes);
    result.insert(result.end(), blocks.begin(), blocks.end());
    const uLong sum = adler32(adler32(0, nullptr, 0), bytes.data(), static_cast<uInt>(bytes.size()));
    for (int shift = 24; shift >= 0; shift -= 8)
        result.push_back(static_cast<std::uint8_t>(sum >> shift));
    return result;
}

} // namespace stage
