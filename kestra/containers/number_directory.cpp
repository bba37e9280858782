#include <kestra/containers/number_directory.h>

#include <algorithm>
#include <cstdlib>

namespace directory_of_numbers {
namespace {

constexpr int rootShift = 24;
constexpr int shiftOfLevel = NumberBlock::shiftOfLevel;
constexpr std::uint32_t byteMask = NumberBlock::byteMask;

NumberBlock* newBlock() {
    return static_cast<NumberBlock*>(std::calloc(1, sizeof(NumberBlock)));
}

NumberBlock* blockIn(void* entry) {
    return static_cast<NumberBlock*>(entry);
}

/// The block that holds a number's slot; null with `missingShift` telling the level where there is none.
NumberBlock* lastBlock(NumberRoot* root, std::uint32_t number, int& missingShift) {
    NumberBlock* block = root;
    for (missingShift = rootShift; block != nullptr && missingShift > 0; missingShift -= shiftOfLevel) {
        block = blockIn(block->entries[(number >> missingShift) & byteMask]);
        if (block == nullptr) return nullptr;
    }
    return block;
}

const NumberBlock emptyBlock = {};

/// Lengthens the short cut to `wanted` blocks; without memory it stays as it is.
void lengthenShortCut(NumberRoot* root, std::uint32_t wanted) {
    constexpr std::uint32_t mostBlocks = beyondLast >> shiftOfLevel;
    wanted = std::min(wanted, mostBlocks);
    void* const grown = std::realloc(root->lastBlocks, wanted * sizeof(NumberBlock*));
    if (grown == nullptr) return;
    root->lastBlocks = static_cast<const NumberBlock**>(grown);
    for (std::uint32_t i = root->lastBlocksKnown; i < wanted; ++i) {
        int missing = 0;
        const NumberBlock* block = lastBlock(root, i << shiftOfLevel, missing);
        root->lastBlocks[i] = block != nullptr ? block : &emptyBlock;
    }
    root->lastBlocksKnown = wanted;
}

/// Brings a new last-level block into the short cut, unless too few of the numbers below it are populated.
void noteLastBlock(NumberRoot* root, std::uint32_t index, const NumberBlock* block) {
    constexpr std::uint32_t always = 16;
    ++root->lastBlocksMade;
    if (index < root->lastBlocksKnown)
        root->lastBlocks[index] = block;
    else if (index < std::max(always, 2 * root->lastBlocksMade))
        lengthenShortCut(root, 2 * (index + 1));
}

int freeBelow(NumberBlock* block, int shift, void (*visit)(void*)) {
    int visited = 0;
    for (void* entry : block->entries) {
        if (entry == nullptr) continue;
        if (shift > 0) {
            visited += freeBelow(blockIn(entry), shift - shiftOfLevel, visit);
        } else {
            visit(entry);
            ++visited;
        }
    }
    std::free(block);
    return visited;
}

}  // namespace

NumberRoot* newRoot() {
    void* root = nullptr;
    while (root == nullptr) root = std::calloc(1, sizeof(NumberRoot));
    return static_cast<NumberRoot*>(root);
}

void** slotOf(NumberRoot* root, std::uint32_t number, bool create) {
    NumberBlock* block = root;
    for (int shift = rootShift; shift > 0; shift -= shiftOfLevel) {
        void*& entry = block->entries[(number >> shift) & byteMask];
        if (entry == nullptr) {
            if (!create || (entry = newBlock()) == nullptr) return nullptr;
            if (shift == shiftOfLevel) noteLastBlock(root, number >> shift, blockIn(entry));
        }
        block = blockIn(entry);
    }
    return &block->entries[number & byteMask];
}

bool seekUp(NumberRoot* root, std::uint32_t& number) {
    while (number < beyondLast) {
        int missing = 0;
        const NumberBlock* block = lastBlock(root, number, missing);
        if (block == nullptr) {
            number = (number | ((std::uint32_t{1} << missing) - 1)) + 1;
            continue;
        }
        for (std::uint32_t i = number & byteMask; i <= byteMask; ++i, ++number)
            if (block->entries[i] != nullptr) return true;
    }
    return false;
}

bool seekDown(NumberRoot* root, std::uint32_t& number) {
    if (number >= beyondLast) number = beyondLast - 1;
    std::int64_t from = number;
    while (from >= 0) {
        int missing = 0;
        const NumberBlock* block = lastBlock(root, static_cast<std::uint32_t>(from), missing);
        if (block == nullptr) {
            from = (from & ~((std::int64_t{1} << missing) - 1)) - 1;
            continue;
        }
        for (std::int64_t i = from & byteMask; i >= 0; --i, --from) {
            if (block->entries[i] == nullptr) continue;
            number = static_cast<std::uint32_t>(from);
            return true;
        }
    }
    return false;
}

std::uint32_t firstFree(NumberRoot* root, std::uint32_t number) {
    while (number < beyondLast) {
        int missing = 0;
        const NumberBlock* block = lastBlock(root, number, missing);
        if (block == nullptr) return number;
        for (std::uint32_t i = number & byteMask; i <= byteMask; ++i, ++number)
            if (block->entries[i] == nullptr) return number;
    }
    return number;
}

int freeAll(NumberRoot* root, void (*visit)(void* element)) {
    if (root == nullptr) return 0;
    std::free(root->lastBlocks);
    return freeBelow(root, rootShift, visit);
}

}  // namespace directory_of_numbers
