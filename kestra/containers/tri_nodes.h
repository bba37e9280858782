#pragma once
#include <cstring>

#include <kestra/containers/key_prefix.h>
#include <kestra/containers/tri.h>

/// The collection's nodes as its own sources see them.

#pragma pack(push, 1)
/// An inner node keeps, behind the members of every node, the greatest element below each child but the last:
/// a search then reads one element a probe without touching the children. The last child needs none: what is
/// greater than the others belongs below it, and elements that arrive in order have nothing to tell upward.
struct TriInnerNode : TriNode {
    void* maxima[capacity];
    std::uint64_t prefixes[capacity];  ///< key prefixes of the maxima, while there is a `text`
    const tri::KeyText* text;          ///< null: only the comparison tells the order
};
#pragma pack(pop)

namespace tri {

/// Pointers stored at any address.
class Slots {
  public:
    explicit Slots(const void* base) : m_base(static_cast<const char*>(base)) {}
    void* operator[](int index) const {
        void* pointer;
        std::memcpy(&pointer, m_base + index * bytes, sizeof pointer);
        return pointer;
    }
    Slots from(int index) const { return Slots(m_base + index * bytes); }

  private:
    static constexpr std::ptrdiff_t bytes = sizeof(void*);
    const char* m_base;
};

inline Slots entriesOf(const TriNode* node) {
    return Slots(reinterpret_cast<const char*>(node) + offsetof(TriNode, entries));
}
inline bool isInner(const TriNode* node) {
    return node->kind == TriNode::inner;
}
inline const TriInnerNode* asInner(const TriNode* node) {
    return static_cast<const TriInnerNode*>(node);
}
inline TriInnerNode* asInner(TriNode* node) {
    return static_cast<TriInnerNode*>(node);
}
inline Slots maximaOf(const TriNode* inner) {
    return Slots(reinterpret_cast<const char*>(inner) + sizeof(TriNode));
}
inline TriNode* childOf(const TriNode* inner, int index) {
    return static_cast<TriNode*>(inner->entries[index]);
}
/// Greatest element below a node that is not empty.
inline void* maximumOf(const TriNode* node) {
    while (isInner(node)) node = childOf(node, node->count - 1);
    return node->entries[node->count - 1];
}

/// Null when there is no memory. Inner nodes keep key prefixes where `text` is not null.
TriNode* newLeaf();
TriNode* newInnerNode(const KeyText* text);
/// Frees a node and all below it.
void freeTree(TriNode* node);
/// Writes the end guard and `next` behind the entries in use.
void seal(TriNode* node);
/// Index of a child in its parent.
int slotOf(const TriNode* inner, const TriNode* child);
/// Opens a gap at `position` and fills it; the node must not be full.
void placeEntry(TriNode* node, int position, void* entry, void* maximum);
void dropEntry(TriNode* node, int position);
/// Moves the entries from `kept` on to the empty node `right`.
void moveTail(TriNode* node, int kept, TriNode* right);
/// Tells the node above that keeps it that the greatest element below `node` is another one.
void maximumChanged(TriNode* node);

}  // namespace tri
