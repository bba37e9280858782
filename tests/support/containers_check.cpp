#include "containers_check.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <vector>

#include <kestra/containers/table.h>

#define AGREE(condition) \
    if (!(condition)) return #condition

namespace {

class Bytes {
  public:
    explicit Bytes(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}
    bool more() const { return !m_bytes.empty(); }
    int next(int below) {
        if (m_bytes.empty()) return 0;
        const int value = m_bytes.front() % below;
        m_bytes = m_bytes.subspan(1);
        return value;
    }

  private:
    std::span<const std::uint8_t> m_bytes;
};

/// An element whose text is in the order of its key; the first eight characters are those of many others.
struct Item {
    explicit Item(int k) : key(k) { std::snprintf(text, sizeof text, "BORNES %c%02d", 'A' + k / 32, k % 32); }
    char text[24];
    int key;
};
int keyOf(const void* item) {
    return static_cast<const Item*>(item)->key;
}
int compareItems(void* first, void* second, void*) {
    return keyOf(first) - keyOf(second);
}

/// A collection and its model: the elements in order in a vector, the cursor an index into it.
class TriModel {
  public:
    explicit TriModel(Comparaison order) : m_tri(order) {}
    const char* run(Bytes bytes) {
        while (bytes.more()) {
            if (const char* wrong = step(bytes)) return wrong;
            if (const char* wrong = compare()) return wrong;
        }
        return nullptr;
    }

  private:
    const char* step(Bytes& bytes) {
        using Step = const char* (TriModel::*)(Bytes&);
        // Runs are erased twice as often as inserted, so that collections stay small.
        constexpr Step steps[] = {&TriModel::insert, &TriModel::insertRun, &TriModel::eraseRun,
                                  &TriModel::find,   &TriModel::walk,      &TriModel::findPointer,
                                  &TriModel::refuse, &TriModel::strange,   &TriModel::clear,
                                  &TriModel::rewind, &TriModel::eraseRun};
        return (this->*steps[bytes.next(std::size(steps))])(bytes);
    }

    const char* compare() {
        if (const char* wrong = m_tri.verify()) return wrong;
        AGREE(m_tri.GetCount() == static_cast<int>(m_order.size()));
        AGREE(m_tri.GetCurrent() == current());
        return nullptr;
    }

    void* current() const { return m_hasCurrent ? m_order[static_cast<std::size_t>(m_at)] : nullptr; }
    int size() const { return static_cast<int>(m_order.size()); }
    void standAt(int at) {
        m_positioned = true;
        m_at = at;
        m_hasCurrent = at >= 0 && at < size();
    }
    void unposition() { m_positioned = m_hasCurrent = false; }
    int lower(int key) const {
        return static_cast<int>(
            std::partition_point(m_order.begin(), m_order.end(), [=](Item* i) { return i->key < key; }) -
            m_order.begin());
    }
    int upper(int key) const { return lower(key + 1); }
    Item* held(int byte) const {
        return m_order.empty() ? nullptr : m_order[static_cast<std::size_t>(byte * size() / 256)];
    }

    const char* insert(Bytes& bytes) {
        const int key = bytes.next(256), unique = bytes.next(2);
        return insert(key, unique, bytes.next(3) - 1);
    }
    const char* insert(int key, int unique, int where) {
        m_items.push_back(std::make_unique<Item>(key));
        Item* const item = m_items.back().get();
        const int first = lower(key), behind = upper(key);
        const bool refused = unique != 0 && behind > first;
        AGREE(m_tri.Insert(item, unique, where) == (refused ? nullptr : item));
        if (refused) return standAt(first), nullptr;
        const int at = where > 0 ? behind : where < 0 || first == behind ? first : first + 1;
        m_order.insert(m_order.begin() + at, item);
        return standAt(at), nullptr;
    }

    const char* insertRun(Bytes& bytes) {
        const int key = bytes.next(256), count = bytes.next(256), where = bytes.next(3) - 1;
        for (int i = 0; i < count; ++i)
            if (const char* wrong = insert((key + (where == 0 ? i * 7 : where * i)) & 255, 0, where))
                return wrong;
        return nullptr;
    }

    /// Thins out a stretch, which leaves nodes that are nearly empty.
    const char* eraseRun(Bytes& bytes) {
        const int count = bytes.next(256), step = bytes.next(9);
        int at = bytes.next(256) * size() / 256;
        for (int i = 0; i < count && at < size(); ++i, at += step)
            if (const char* wrong = eraseAt(at)) return wrong;
        return nullptr;
    }

    const char* eraseAt(int at) {
        AGREE(m_tri.Erase(m_order[static_cast<std::size_t>(at)]) == 1);
        m_order.erase(m_order.begin() + at);
        standAt(at - 1);
        if (m_order.empty()) unposition();
        return nullptr;
    }

    const char* find(Bytes& bytes) {
        const int key = bytes.next(256), mode = bytes.next(6) - 2;
        Item wanted{key};
        void* const found = m_tri.Find(&wanted, mode);
        if (m_order.empty()) return unposition(), found == nullptr ? nullptr : "Find in an empty collection";
        const bool equal = upper(key) > lower(key);
        standAt(mode > 0 ? upper(key) - 1 : equal ? lower(key) : lower(key) - 1);
        if (!equal && mode == 1) standAt(upper(key));
        if (!equal && mode != 1 && mode != -1) m_hasCurrent = false;
        AGREE(found == current());
        return nullptr;
    }

    const char* walk(Bytes& bytes) {
        const bool forward = bytes.next(2) != 0;
        void* const starts[] = {nullptr, CTri::FrontGuard(), CTri::EndGuard(), current(),
                                held(bytes.next(256))};
        const int start = bytes.next(std::size(starts));
        void* const from = starts[start];
        const bool restart = from == (forward ? CTri::FrontGuard() : CTri::EndGuard());
        const bool notHeld = !restart && (start == 1 || start == 2);
        if (start > 2 && from != nullptr) standAt(indexOf(static_cast<Item*>(from)));
        if (restart || (!notHeld && !m_positioned)) standAt(forward ? -1 : size());
        if (notHeld)
            m_hasCurrent = false;
        else
            standAt(std::clamp(m_at + (forward ? 1 : -1), -1, size()));
        if (m_order.empty() && !notHeld) unposition();
        AGREE((forward ? m_tri.Next(from) : m_tri.Back(from)) == (notHeld ? nullptr : current()));
        return nullptr;
    }

    int indexOf(Item* item) const {
        return static_cast<int>(std::find(m_order.begin(), m_order.end(), item) - m_order.begin());
    }

    const char* findPointer(Bytes& bytes) {
        Item* const item = held(bytes.next(256));
        if (item == nullptr) return nullptr;
        AGREE(m_tri.FindPtr(item) == item);
        return standAt(indexOf(item)), nullptr;
    }

    const char* refuse(Bytes&) {
        for (void* refused : {static_cast<void*>(nullptr), CTri::FrontGuard(), CTri::EndGuard()}) {
            AGREE(m_tri.Insert(refused, 0, 1) == nullptr);
            AGREE(m_tri.Find(refused, 1) == nullptr && m_tri.Erase(refused) == 0);
        }
        return nullptr;
    }

    /// An element equal to some that are held, but not held itself.
    const char* strange(Bytes& bytes) {
        Item stranger{m_order.empty() ? 0 : m_order.front()->key};
        AGREE(bytes.next(2) != 0 ? m_tri.Erase(&stranger) == 0 : m_tri.Next(&stranger) == nullptr);
        AGREE(m_tri.GetCurrent() == nullptr);
        return rewind(bytes);
    }

    const char* clear(Bytes& bytes) {
        if (bytes.next(32) != 0) return nullptr;
        AGREE(m_tri.Clear() == size());
        m_order.clear();
        return unposition(), nullptr;
    }
    const char* rewind(Bytes&) {
        m_tri.Rewind();
        return unposition(), nullptr;
    }

    std::vector<std::unique_ptr<Item>> m_items;
    std::vector<Item*> m_order;
    CTri m_tri;
    bool m_positioned = false;
    bool m_hasCurrent = false;
    int m_at = -1;
};

struct Counted : CElement {
    explicit Counted(int k) : key(k) { ++living; }
    Counted(const Counted&) = delete;
    ~Counted() override { --living; }
    int key;
    static int living;
};
int Counted::living = 0;

int compareCounted(void* first, void* second, void*) {
    const auto key = [](void* e) { return static_cast<Counted*>(static_cast<CElement*>(e))->key; };
    return key(first) - key(second);
}

constexpr int numbers[] = {0,     1,     2,        3,         255,        256,       257,
                           65535, 65536, 0xFFFFFF, 0x1000000, 0x7FFFFFFC, 0x7FFFFFFD};

/// A table and its model: the elements by number.
class TableModel {
  public:
    const char* run(Bytes bytes) {
        while (bytes.more()) {
            if (const char* wrong = step(bytes)) return wrong;
            AGREE(m_table.iCount() == static_cast<long>(m_held.size()));
            AGREE(Counted::living == static_cast<int>(m_held.size()));
            AGREE(m_table.Collection()->GetCount() <= static_cast<int>(m_held.size()));
            if (const char* wrong = m_table.Collection()->verify()) return wrong;
        }
        return nullptr;
    }

  private:
    static int number(Bytes& bytes) {
        const int choice = bytes.next(40);
        return choice < 13 ? numbers[choice] : choice < 38 ? choice - 10 : 1000 * choice;
    }

    const char* step(Bytes& bytes) {
        using Step = const char* (TableModel::*)(Bytes&);
        constexpr Step steps[] = {&TableModel::add,   &TableModel::addAnywhere, &TableModel::erase,
                                  &TableModel::walk,  &TableModel::find,        &TableModel::move,
                                  &TableModel::rekey, &TableModel::border,      &TableModel::clear};
        return (this->*steps[bytes.next(std::size(steps))])(bytes);
    }

    const char* add(Bytes& bytes) {
        auto* const element = new Counted(bytes.next(64));
        const int at = number(bytes);
        AGREE(m_table.Add(at, element, bytes.next(2), 1) == element);
        AGREE(element->m_Numero == at && m_table.At(at) == element);
        m_held[at] = element;
        return nullptr;
    }
    const char* addAnywhere(Bytes& bytes) {
        auto* const element = new Counted(bytes.next(64));
        AGREE(m_table.Add(-1, element) == element);
        AGREE(element->m_Numero >= 1 && m_held.count(element->m_Numero) == 0);
        m_held[element->m_Numero] = element;
        AGREE(m_held.count(m_table.iLibre(0)) == 0);
        return nullptr;
    }
    const char* erase(Bytes& bytes) { return erase(number(bytes)); }
    const char* erase(int number) {
        AGREE(m_table.Erase(number) == (m_held.erase(number) == 1));
        return nullptr;
    }
    const char* walk(Bytes& bytes) {
        const int from = number(bytes);
        long up = from, down = from;
        const auto above = m_held.upper_bound(from), at = m_held.lower_bound(from);
        AGREE(m_table.iNext(up) == (above != m_held.end() ? above->second : nullptr));
        AGREE(up == (above != m_held.end() ? above->first : CTbl::iEOF));
        AGREE(m_table.iBack(down) == (at != m_held.begin() ? std::prev(at)->second : nullptr));
        AGREE(down == (at != m_held.begin() ? std::prev(at)->first : CTbl::iBOF));
        return nullptr;
    }
    const char* find(Bytes& bytes) {
        const int key = bytes.next(64);
        auto wanted = std::make_unique<Counted>(key);
        auto* const found = static_cast<Counted*>(m_table.Find(wanted.get(), 0));
        AGREE(found == nullptr || (found->key == key && m_held[found->m_Numero] == found));
        AGREE(m_table.iFind(wanted.get(), 0) == (found != nullptr ? found->m_Numero : CTbl::iEOF));
        return nullptr;
    }
    const char* move(Bytes& bytes) {
        const int from = number(bytes), to = number(bytes);
        const auto at = m_held.find(from);
        if (at == m_held.end()) return nullptr;
        Counted* const element = at->second;
        AGREE(m_table.Add(to, element) == element);
        m_held.erase(at);
        m_held[to] = element;
        AGREE(element->m_Numero == to && (to == from || m_table.At(from) == nullptr));
        return nullptr;
    }
    /// A key that changes behind the collection's back: its element must still go away for good.
    const char* rekey(Bytes& bytes) {
        const auto at = m_held.find(number(bytes));
        if (at == m_held.end()) return nullptr;
        at->second->key = bytes.next(64);
        return erase(at->first);
    }
    const char* border(Bytes&) {
        for (const int outside : {0x7FFFFFFE, 0x7FFFFFFF, -1, -2147483647}) {
            if (outside > 0) AGREE(m_table.Add(outside, new Counted(0)) == nullptr);
            AGREE(m_table.At(outside) == nullptr && !m_table.Erase(outside));
        }
        return nullptr;
    }
    const char* clear(Bytes& bytes) {
        if (bytes.next(16) != 0) return nullptr;
        AGREE(m_table.Clear() == static_cast<int>(m_held.size()));
        m_held.clear();
        return nullptr;
    }

    CTbl m_table{TypeElement{77}, compareCounted};
    std::map<int, Counted*> m_held;
};

}  // namespace

const char* checkTri(std::span<const std::uint8_t> operations) {
    // The second order keeps key prefixes.
    for (const Comparaison order : {compareItems, triFctTexte})
        if (const char* wrong = TriModel(order).run(Bytes(operations))) return wrong;
    return nullptr;
}

const char* checkTable(std::span<const std::uint8_t> operations) {
    auto model = std::make_unique<TableModel>();
    if (const char* wrong = model->run(Bytes(operations))) return wrong;
    model.reset();
    return Counted::living == 0 ? nullptr : "elements left after the table";
}
