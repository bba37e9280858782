#include <kestra/containers/tri_nodes.h>

using namespace tri;

namespace {

/// What a walk over the whole tree has seen so far, leaves from left to right.
class Verification {
  public:
    Verification(Comparaison compare, void* param) : m_compare(compare), m_param(param) {}

    const char* node(const TriNode* node, const TriNode* parent, int depth) {
        if (node->parent != parent) return "parent";
        if (node->mark != 0xFE || node->frontGuard != CTri::frontGuard) return "mark or front guard";
        if (node->count < 1 || node->count > TriNode::capacity) return "entries in use";
        if (const char* wrong = slotsBehind(node)) return wrong;
        return isInner(node) ? children(node, depth) : leaf(node, depth);
    }

    const TriNode* lastLeaf() const { return m_lastLeaf; }
    int elements() const { return m_elements; }

  private:
    static const char* slotsBehind(const TriNode* node) {
        const Slots entries = entriesOf(node);
        const bool nextOverGuard = node->count == TriNode::capacity - 1;
        if (entries[node->count] != CTri::EndGuard()) return "end guard behind the entries";
        if (entries[node->count + 1] != node->next) return "next leaf behind the entries";
        return nextOverGuard || node->endGuard == CTri::endGuard ? nullptr : "end guard";
    }

    const char* children(const TriNode* inner, int depth) {
        if (inner->previous != nullptr || inner->next != nullptr) return "chained inner node";
        for (int i = 0; i < inner->count; ++i) {
            const TriNode* child = childOf(inner, i);
            if (const char* wrong = node(child, inner, depth + 1)) return wrong;
            const bool kept = i < inner->count - 1;
            if (!kept) continue;
            if (maximaOf(inner)[i] != maximumOf(child)) return "greatest element below a child";
            if (const char* wrong = prefix(asInner(inner), i)) return wrong;
        }
        return nullptr;
    }

    static const char* prefix(const TriInnerNode* inner, int slot) {
        if (inner->text == nullptr) return nullptr;
        const bool right = inner->prefixes[slot] == keyPrefix(inner->maxima[slot], *inner->text);
        return right ? nullptr : "key prefix";
    }

    const char* leaf(const TriNode* node, int depth) {
        if (node->kind != TriNode::leaf) return "kind";
        if (m_lastLeaf != nullptr && depth != m_leafDepth) return "depth";
        if (node->previous != m_lastLeaf) return "previous leaf";
        if (m_lastLeaf != nullptr && m_lastLeaf->next != node) return "next leaf";
        for (int i = 0; i < node->count; ++i) {
            void* const element = node->entries[i];
            if (m_elements++ > 0 && m_compare(m_lastElement, element, m_param) > 0) return "order";
            m_lastElement = element;
        }
        m_lastLeaf = node;
        m_leafDepth = depth;
        return nullptr;
    }

    Comparaison m_compare;
    void* m_param;
    const TriNode* m_lastLeaf = nullptr;
    void* m_lastElement = nullptr;
    int m_leafDepth = 0;
    int m_elements = 0;
};

/// The leaf is one of the collection's: its chain ends at the last leaf.
bool leadsTo(const TriNode* leaf, const TriNode* last) {
    while (leaf != nullptr && leaf != last) leaf = leaf->next;
    return leaf != nullptr;
}

}  // namespace

const char* CTri::verify() const {
    Verification seen(m_compare, m_param);
    if (m_root != nullptr)
        if (const char* wrong = seen.node(m_root, nullptr, 0)) return wrong;
    if (seen.lastLeaf() != nullptr && seen.lastLeaf()->next != nullptr) return "next of the last leaf";
    if (seen.elements() != m_count) return "number of elements";
    if (m_cursorNode == nullptr) return m_current == nullptr ? nullptr : "current element without cursor";
    if (!leadsTo(m_cursorNode, seen.lastLeaf())) return "cursor outside the leaves";
    if (m_index < -1 || m_index > m_cursorNode->count) return "cursor index";
    if (m_current == nullptr) return nullptr;
    const bool onEntry = m_index >= 0 && m_index < m_cursorNode->count;
    return onEntry && m_cursorNode->entries[m_index] == m_current ? nullptr : "current element";
}
