// Compiled without lifetime dead-store elimination: the destructor clears the mark for a second tear-down.
#include <kestra/containers/tri.h>

#include <cstdlib>
#include <string>

#include <dorsel/trace.h>
#include <kestra/containers/tri_nodes.h>
#include <platform/cp1252.h>
#include <platform/prompt.h>

using namespace tri;

namespace {

constexpr unsigned errorIcon = 16;

bool isElement(const void* element) {
    return element != nullptr && element != CTri::FrontGuard() && element != CTri::EndGuard();
}

/// Keys stand behind the element's header or at its start; both lines are wanted when they differ.
void prefetchElement(const void* element) {
    constexpr std::size_t keyOffset = sizeof(CElement);
    __builtin_prefetch(element);
    // As a number: there is nothing behind the wildcard.
    __builtin_prefetch(reinterpret_cast<const void*>(reinterpret_cast<std::uintptr_t>(element) + keyOffset));
}

constexpr int probesAhead = 4;  // Two rounds of fetching cover a leaf.

/// Fetches the elements that the next probes of a bisection over `count` values may read.
template <int probes>
void prefetchProbes(Slots values, int count) {
    if constexpr (probes > 0) {
        if (count <= 0) return;
        const int half = count / 2;
        prefetchElement(values[half]);
        prefetchProbes<probes - 1>(values, half);
        prefetchProbes<probes - 1>(values.from(half + 1), count - half - 1);
    }
}

/// Fetches a node, which a bisection reads all over.
void prefetchNode(const TriNode* node) {
    constexpr int line = 64;
    const char* bytes = reinterpret_cast<const char*>(node);
    for (int offset = 0; offset < static_cast<int>(sizeof(TriNode)); offset += line)
        __builtin_prefetch(bytes + offset);
}

void showUnknownFunction(const char* name) {
    const std::string text = std::string("Fonction Tri :") + name + " NON Trouvée Voir TREMBOLE ";
    mMessageBox(errorIcon, text.c_str(), nullptr);
}

bool reportEmptyNode() {
    platform::thePrompt().ask(platform::styleOk, "erreure Ligne Tri Vide", "");
    return false;
}

}  // namespace

// ---- life

CTri::CTri(Comparaison compare) : m_compare(compare != nullptr ? compare : triFctTexte) {}

CTri::~CTri() {
    if (m_mark != 0xFE) return;
    m_mark = 0;
    Clear();
}

void* CTri::operator new(std::size_t size) noexcept {
    return std::calloc(1, size);
}
void CTri::operator delete(void* header) {
    std::free(header);
}

int CTri::SetFunc(const char* name, TableFminmax* table) {
    if (name == nullptr || *name == '\0' || table == nullptr) return 0;
    for (; table->function != nullptr; ++table) {
        if (!platform::equalNoCase1252(table->name, name)) continue;
        m_compare = table->function;
        return 1;
    }
    showUnknownFunction(name);
    return 0;
}

int CTri::Clear() {
    const int held = m_count;
    freeTree(m_root);
    m_root = nullptr;
    m_count = 0;
    Rewind();
    return held;
}

// ---- searching

namespace {

/// What a search looks for, and how it compares.
struct SearchKey {
    void* key;
    Comparaison compare;
    void* param;
    const KeyText* text;  ///< null: there is no prefix
    std::uint64_t prefix;

    SearchKey(void* wanted, Comparaison order, void* parameter)
        : key(wanted),
          compare(order),
          param(parameter),
          text(isOperand(key) ? keyTextOf(compare) : nullptr),
          prefix(text != nullptr ? keyPrefix(key, *text) : 0) {}

    int orderOf(void* element) const { return compare(element, key, param); }
};

/// First of `count` values that is not less than the key (`last`: that is greater); `equal` tells whether the
/// value found (`last`: the one before it) equals the key. `order(i)` compares value i with the key;
/// `announce(low, count)` is told every few probes which values the next ones are taken from.
template <bool last>
[[gnu::always_inline]] inline int bisect(int count, bool& equal, auto&& order, auto&& announce) {
    int low = 0;
    int decisive = 1;
    for (int probe = 0; count > 0; ++probe) {
        if (probe % probesAhead == 0) announce(low, count);
        const int half = count / 2;
        const int found = order(low + half);
        const bool right = last ? found <= 0 : found < 0;
        decisive = right == last ? found : decisive;
        low = right ? low + half + 1 : low;
        count = right ? count - half - 1 : half;
    }
    equal = decisive == 0;
    return low;
}

/// The same over elements.
template <bool last>
[[gnu::always_inline]] inline int bisectElements(Slots elements, int count, const SearchKey& key,
                                                 bool& equal) {
    return bisect<last>(
        count, equal, [&](int i) { return key.orderOf(elements[i]); },
        [&](int low, int left) { prefetchProbes<probesAhead>(elements.from(low), left); });
}

/// Index of the child under which the key belongs. Whatever is greater than the other children belongs under
/// the last one.
template <bool last>
int childFor(const TriInnerNode* inner, const SearchKey& key) {
    bool equal;
    const int others = inner->count - 1;
    if (inner->text == nullptr || inner->text != key.text)
        return bisectElements<last>(maximaOf(inner), others, key, equal);
    const auto order = [&](int i) {
        const std::uint64_t prefix = inner->prefixes[i];
        return prefix < key.prefix ? -1 : prefix > key.prefix ? 1 : key.orderOf(inner->maxima[i]);
    };
    return bisect<last>(others, equal, order, [](int, int) {});
}

}  // namespace

template <CTri::Among among>
CTri::Place CTri::descend(void* wanted) const {
    constexpr bool last = among == Among::last;
    const SearchKey key(wanted, m_compare, m_param);
    TriNode* node = m_root;
    while (isInner(node) && node->count > 0) {
        node = childOf(node, childFor<last>(asInner(node), key));
        prefetchNode(node);
    }
    if (node->count == 0) return {nullptr, -1, reportEmptyNode()};

    bool equal = false;
    const int found = bisectElements<last>(entriesOf(node), node->count, key, equal);
    if (!last && equal) return {node, found, true};
    if (found > 0 || node->previous == nullptr) return {node, found - 1, equal};
    // Between two leaves a key belongs to the left one.
    node = node->previous;
    equal = last && key.orderOf(node->entries[node->count - 1]) == 0;
    return {node, node->count - 1, equal};
}

/// False, without current element, when the comparison threw or a node was empty.
bool CTri::search(void* key, Among among, Place& place) {
    try {
        place = among == Among::first ? descend<Among::first>(key) : descend<Among::last>(key);
    } catch (...) {
        place.leaf = nullptr;
    }
    if (place.leaf == nullptr) m_current = nullptr;
    return place.leaf != nullptr;
}

void CTri::standAt(const Place& place) {
    m_cursorNode = place.leaf;
    m_index = static_cast<std::int16_t>(place.index);
    m_current = place.index >= 0 ? place.leaf->entries[place.index] : nullptr;
}

void* CTri::Find(void* key, int mode) {
    if (!isElement(key)) return nullptr;
    if (m_root == nullptr) {
        Rewind();
        return nullptr;
    }
    Place place;
    if (!search(key, mode > 0 ? Among::last : Among::first, place)) return nullptr;
    standAt(place);
    if (place.equal || (mode == -1 && place.index >= 0)) return m_current;
    if (mode == 1) return stepForward();
    return m_current = nullptr;
}

void* CTri::FindPtr(void* element) {
    if (element == m_current) return m_current;
    return locate(element) ? m_current : nullptr;
}

/// Puts the cursor on this very element; false, without current element, when it is not held.
bool CTri::locate(void* element) {
    Place place;
    m_current = nullptr;
    if (!isElement(element) || m_root == nullptr || !search(element, Among::first, place)) return false;
    standAt(place);
    if (m_current == element && place.equal) return true;
    if (place.equal && walkToAddress(element)) return true;
    m_current = nullptr;
    return false;
}

/// Walks from the cursor over equal elements up to this one.
bool CTri::walkToAddress(void* element) {
    try {
        while (stepForward() != nullptr) {
            if (m_current == element) return true;
            if (m_compare(m_current, element, m_param) != 0) return false;
        }
    } catch (...) {
    }
    return false;
}

// ---- walking

void CTri::Rewind() {
    m_cursorNode = nullptr;
    m_index = -1;
    m_current = nullptr;
}

TriNode* CTri::edgeLeaf(bool last) const {
    TriNode* node = m_root;
    while (isInner(node)) node = childOf(node, last ? node->count - 1 : 0);
    return node;
}

void* CTri::nextSlowly(void* from) {
    if (from == FrontGuard() || (from == nullptr && m_cursorNode == nullptr)) {
        Rewind();
        if (m_root == nullptr) return nullptr;
        m_cursorNode = edgeLeaf(false);
    } else if (from != nullptr && from != m_current && !locate(from)) {
        return nullptr;
    }
    return stepForward();
}

void* CTri::backSlowly(void* from) {
    if (from == EndGuard() || (from == nullptr && m_cursorNode == nullptr)) {
        Rewind();
        if (m_root == nullptr) return nullptr;
        m_cursorNode = edgeLeaf(true);
        m_index = m_cursorNode->count;
    } else if (from != nullptr && from != m_current && !locate(from)) {
        return nullptr;
    }
    return stepBack();
}

void* CTri::stepForward() {
    if (m_index + 1 < m_cursorNode->count) {
        ++m_index;
    } else if (m_cursorNode->next != nullptr) {
        m_cursorNode = m_cursorNode->next;
        m_index = 0;
        if (m_cursorNode->next != nullptr) prefetchNode(m_cursorNode->next);
    } else {
        m_index = m_cursorNode->count;
        return m_current = nullptr;
    }
    return m_current = m_cursorNode->entries[m_index];
}

void* CTri::stepBack() {
    if (m_index > 0) {
        --m_index;
    } else if (m_cursorNode->previous != nullptr) {
        m_cursorNode = m_cursorNode->previous;
        m_index = static_cast<std::int16_t>(m_cursorNode->count - 1);
        if (m_cursorNode->previous != nullptr) prefetchNode(m_cursorNode->previous);
    } else {
        m_index = -1;
        return m_current = nullptr;
    }
    return m_current = m_cursorNode->entries[m_index];
}

// ---- inserting

void* CTri::Insert(void* element, int unique, int where) {
    if (!isElement(element)) return nullptr;
    Place place{nullptr, -1, false};
    if (m_root == nullptr) {
        m_root = place.leaf = newLeaf();
        if (m_root == nullptr) return nullptr;
    } else if (!placeForInsertion(element, unique, where, place)) {
        return nullptr;
    }
    TriNode* const leaf = insertAfter(place.leaf, place.index, element, nullptr);
    if (leaf == nullptr) return nullptr;
    standAt({leaf, place.index, true});
    ++m_count;
    return element;
}

/// Where to insert, behind the place given; false when the element is refused.
bool CTri::placeForInsertion(void* element, int unique, int where, Place& place) {
    if (searchEnds(element, place)) return true;
    if (!search(element, unique == 0 && where > 0 ? Among::last : Among::first, place)) return false;
    if (!place.equal) return true;
    standAt(place);
    if (unique != 0) return false;
    if (where < 0) {
        stepBack();
        place = {m_cursorNode, m_index, false};
    }
    return true;
}

/// Elements that come in order belong next to the one before them: when the cursor stands at an end of the
/// collection, one comparison tells.
bool CTri::searchEnds(void* key, Place& place) const {
    if (m_current == nullptr) return false;
    const bool atFirst = m_index == 0 && m_cursorNode->previous == nullptr;
    const bool atLast = m_index == m_cursorNode->count - 1 && m_cursorNode->next == nullptr;
    if (!atFirst && !atLast) return false;
    try {
        const int order = m_compare(m_current, key, m_param);
        if (atLast && order < 0)
            place = {m_cursorNode, m_index, false};
        else if (atFirst && order > 0)
            place = {m_cursorNode, -1, false};
        else
            return false;
        return true;
    } catch (...) {
        return false;
    }
}

/// Puts an entry behind `position` and returns the node it came to, `position` being its place there; null,
/// with nothing changed, when there was no memory for a split.
TriNode* CTri::insertAfter(TriNode* node, int& position, void* entry, void* maximum) {
    if (node->count == TriNode::capacity) {
        TriNode* const right = split(node, position);
        if (right == nullptr) return nullptr;
        if (position >= node->count) {
            position -= node->count;
            node = right;
        }
    }
    ++position;
    placeEntry(node, position, entry, maximum);
    if (position == node->count - 1 && node->next != nullptr) maximumChanged(node);
    return node;
}

/// Moves the tail of a full node to a new one on its right, which is returned. Where entries arrive in order,
/// the node left behind stays three quarters full.
TriNode* CTri::split(TriNode* node, int position) {
    const int kept = position < TriNode::capacity / 2 ? TriNode::capacity / 4 : 3 * TriNode::capacity / 4;
    TriNode* const right = isInner(node) ? newInnerNode(asInner(node)->text) : newLeaf();
    if (right == nullptr) return nullptr;
    if (!hangBeside(node, right)) {
        std::free(right);
        return nullptr;
    }
    moveTail(node, kept, right);
    if (!isInner(node)) {
        right->previous = node;
        right->next = node->next;
        node->next = right;
        if (right->next != nullptr) right->next->previous = right;
    }
    seal(node);
    seal(right);
    maximumChanged(node);
    return right;
}

/// Makes `right`, which is about to take the tail of `node`, the child behind it, below a new root if need
/// be. False, with nothing changed, when there was no memory.
bool CTri::hangBeside(TriNode* node, TriNode* right) {
    void* const maximum = maximumOf(node);
    TriNode* const above = node->parent;
    if (above != nullptr) {
        int slot = slotOf(above, node);
        return insertAfter(above, slot, right, maximum) != nullptr;
    }
    TriNode* const root = newInnerNode(keyTextOf(m_compare));
    if (root == nullptr) return false;
    placeEntry(root, 0, node, maximum);
    placeEntry(root, 1, right, maximum);
    m_root = root;
    return true;
}

// ---- erasing

int CTri::Erase(void* element) {
    if (!isElement(element) || (element != m_current && !locate(element))) return 0;
    eraseAtCursor();
    return 1;
}

/// Erases this very element wherever it stands, without comparing: for one whose key has changed.
int CTri::eraseByAddress(void* element) {
    for (void* held = Next(FrontGuard()); held != nullptr; held = Next()) {
        if (held != element) continue;
        eraseAtCursor();
        return 1;
    }
    return 0;
}

void CTri::eraseAtCursor() {
    TriNode* const leaf = m_cursorNode;
    const int position = m_index;
    stepBack();
    removeEntry(leaf, position);
    --m_count;
}

void CTri::removeEntry(TriNode* node, int position) {
    dropEntry(node, position);
    if (node->count == 0) {
        unlink(node);
    } else if (position == node->count) {
        maximumChanged(node);
    }
}

/// Takes an empty node out of the tree and frees it.
void CTri::unlink(TriNode* node) {
    if (node->previous != nullptr) {
        node->previous->next = node->next;
        seal(node->previous);
    }
    if (node->next != nullptr) node->next->previous = node->previous;
    if (m_cursorNode == node) m_cursorNode = node->next;  // The cursor stood before the very first entry.
    if (node->parent != nullptr) {
        removeEntry(node->parent, slotOf(node->parent, node));
    } else {
        m_root = nullptr;
    }
    std::free(node);
}
