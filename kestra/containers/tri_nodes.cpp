#include <kestra/containers/tri_nodes.h>

#include <cstdlib>

namespace tri {
namespace {

constexpr std::size_t pointerBytes = sizeof(void*);

char* entryAddress(TriNode* node, int index) {
    return reinterpret_cast<char*>(node) + offsetof(TriNode, entries) +
           static_cast<std::size_t>(index) * pointerBytes;
}

std::size_t bytesOf(int pointers) {
    return static_cast<std::size_t>(pointers) * pointerBytes;
}

/// Null when there is no memory.
TriNode* newNode(char kind, std::size_t size) {
    auto* node = static_cast<TriNode*>(std::calloc(1, size));
    if (node == nullptr) return nullptr;
    node->kind = kind;
    node->mark = 0xFE;
    node->frontGuard = CTri::frontGuard;
    node->endGuard = CTri::endGuard;
    return node;
}

/// Moves the maxima from `from` on, and what is kept beside them, to `to` of `target`.
void moveMaxima(const TriInnerNode* inner, int from, TriInnerNode* target, int to, int count) {
    std::memmove(&target->maxima[to], &inner->maxima[from], bytesOf(count));
    std::memmove(&target->prefixes[to], &inner->prefixes[from], bytesOf(count));
}

void setMaximum(TriInnerNode* inner, int slot, void* maximum) {
    inner->maxima[slot] = maximum;
    if (inner->text == nullptr) return;
    if (isOperand(maximum))
        inner->prefixes[slot] = keyPrefix(maximum, *inner->text);
    else
        inner->text = nullptr;  // It equals everything: no prefix does.
}

}  // namespace

TriNode* newLeaf() {
    return newNode(TriNode::leaf, sizeof(TriNode));
}

TriNode* newInnerNode(const KeyText* text) {
    TriNode* const node = newNode(TriNode::inner, sizeof(TriInnerNode));
    if (node != nullptr) asInner(node)->text = text;
    return node;
}

void freeTree(TriNode* node) {
    if (node == nullptr) return;
    if (isInner(node))
        for (int i = 0; i < node->count; ++i) freeTree(childOf(node, i));
    std::free(node);
}

void seal(TriNode* node) {
    node->endGuard = CTri::endGuard;
    // With 127 or 128 entries these slots are the two members behind the entries.
    std::memcpy(entryAddress(node, node->count), &CTri::endGuard, pointerBytes);
    TriNode* const next = node->next;
    std::memcpy(entryAddress(node, node->count + 1), &next, pointerBytes);
}

int slotOf(const TriNode* inner, const TriNode* child) {
    const int last = inner->count - 1;
    if (inner->entries[last] == child) return last;
    int slot = 0;
    while (inner->entries[slot] != child) ++slot;
    return slot;
}

void placeEntry(TriNode* node, int position, void* entry, void* maximum) {
    const int behind = node->count - position;
    if (behind > 0)
        std::memmove(entryAddress(node, position + 1), entryAddress(node, position), bytesOf(behind));
    node->entries[position] = entry;
    if (isInner(node)) {
        static_cast<TriNode*>(entry)->parent = node;
        moveMaxima(asInner(node), position, asInner(node), position + 1, behind);
        setMaximum(asInner(node), position, maximum);
    }
    ++node->count;
    seal(node);
}

void dropEntry(TriNode* node, int position) {
    const int behind = node->count - position - 1;
    std::memmove(entryAddress(node, position), entryAddress(node, position + 1), bytesOf(behind));
    if (isInner(node)) moveMaxima(asInner(node), position + 1, asInner(node), position, behind);
    --node->count;
    seal(node);
}

void moveTail(TriNode* node, int kept, TriNode* right) {
    const int moved = node->count - kept;
    std::memcpy(entryAddress(right, 0), entryAddress(node, kept), bytesOf(moved));
    if (isInner(node)) {
        moveMaxima(asInner(node), kept, asInner(right), 0, moved);
        for (int i = 0; i < moved; ++i) childOf(right, i)->parent = right;
    }
    right->count = static_cast<std::int16_t>(moved);
    node->count = static_cast<std::int16_t>(kept);
}

void maximumChanged(TriNode* node) {
    void* const maximum = maximumOf(node);
    for (TriNode* parent = node->parent; parent != nullptr; node = parent, parent = node->parent) {
        const int slot = slotOf(parent, node);
        if (slot == parent->count - 1) continue;
        setMaximum(asInner(parent), slot, maximum);
        return;
    }
}

}  // namespace tri
