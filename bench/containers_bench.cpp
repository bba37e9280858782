// The sorted collection and the number directory of tables beside the ordered and keyed containers of others:
// elements of a 20-byte header and a key text of 8 to 24 bytes, each allocated by itself.
#include <cstdlib>
#include <cstring>
#include <memory>
#include <numeric>
#include <random>
#include <set>
#include <unordered_map>
#include <vector>

#include <kestra/containers/table.h>

#include "side_by_side.h"

#ifdef KESTRA_BENCH_PEERS
#include <Judy.h>
#include <absl/container/btree_set.h>
#include <malloc.h>
#endif

namespace {

using bench::againstBest;
using bench::Contender;

constexpr std::size_t headerSize = 20;
using Elements = std::vector<void*>;

int compareKeys(void* first, void* second, void*) {
    return std::strcmp(static_cast<char*>(first) + headerSize, static_cast<char*>(second) + headerSize);
}
Comparaison volatile orderInUse = compareKeys;  // A collection does not know its comparison beforehand.

struct Less {
    Comparaison compare = orderInUse;
    bool operator()(void* first, void* second) const { return compare(first, second, nullptr) < 0; }
};
using StdSet = std::multiset<void*, Less>;
#ifdef KESTRA_BENCH_PEERS
using AbslSet = absl::btree_multiset<void*, Less>;
#endif

void* newPlainElement(const std::string& key) {
    char* element = static_cast<char*>(std::calloc(1, headerSize + key.size() + 1));
    std::memcpy(element + headerSize, key.c_str(), key.size() + 1);
    return element;
}

void* newKeyedElement(const std::string& key) {
    return CEDynamique::Create(key.c_str(), nullptr, 0);
}
void* (*newElement)(const std::string& key) = newPlainElement;

/// Elements with keys of 8 to 24 letters and digits, in random order.
Elements randomElements(std::size_t count, std::mt19937& random) {
    std::uniform_int_distribution<int> length(8, 24), letter(0, 35);
    Elements elements;
    for (std::size_t i = 0; i < count; ++i) {
        std::string key(static_cast<std::size_t>(length(random)), ' ');
        for (char& c : key) c = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"[letter(random)];
        elements.push_back(newElement(key));
    }
    return elements;
}

Elements inKeyOrder(Elements elements) {
    std::sort(elements.begin(), elements.end(), Less());
    return elements;
}

void freeElements(const Elements& elements) {
    for (void* element : elements) std::free(element);
}

/// One kind of collection in the bench: filled, searched, walked and emptied the same way as the others.
struct Ours {
    static constexpr const char* name = "CTri";
    CTri tri{orderInUse};
    void insert(void* element) { tri.Insert(element, 0, 1); }
    void* find(void* key) { return tri.Find(key, 0); }
    void* findGreater(void* key) { return tri.Find(key, 1); }
    void erase(void* element) { tri.Erase(element); }
    void walk(auto&& visit) {
        for (void* e = tri.Next(CTri::FrontGuard()); e != nullptr; e = tri.Next()) visit(e);
    }
    void walkBack(auto&& visit) {
        for (void* e = tri.Back(CTri::EndGuard()); e != nullptr; e = tri.Back()) visit(e);
    }
};

template <class Set>
struct Peer {
    static constexpr const char* name =
        std::is_same_v<Set, StdSet> ? "std::multiset" : "absl::btree_multiset";
    Set set;
    void insert(void* element) { set.insert(element); }
    void* find(void* key) {
        const auto found = set.find(key);
        return found != set.end() ? *found : nullptr;
    }
    void* findGreater(void* key) {
        const auto found = set.lower_bound(key);
        return found != set.end() ? *found : nullptr;
    }
    void erase(void* element) {
        for (auto at = set.find(element); at != set.end(); ++at) {
            if (*at != element) continue;
            set.erase(at);
            return;
        }
    }
    void walk(auto&& visit) {
        for (void* element : set) visit(element);
    }
    void walkBack(auto&& visit) {
        for (auto at = set.rbegin(); at != set.rend(); ++at) visit(*at);
    }
};

/// The same work for ours and each peer; `work` and `before` take a std::unique_ptr to the collection.
template <class Collection>
Contender contender(auto work, auto before) {
    auto collection = std::make_shared<std::unique_ptr<Collection>>();
    return {Collection::name, [=] { work(*collection); }, [=] { before(*collection); }};
}

void compareSets(const std::string& name, double limit, auto work, auto before, int rounds = 7) {
    std::vector<Contender> peers = {contender<Peer<StdSet>>(work, before)};
#ifdef KESTRA_BENCH_PEERS
    peers.push_back(contender<Peer<AbslSet>>(work, before));
#endif
    againstBest(name.c_str(), limit, contender<Ours>(work, before), std::move(peers), rounds);
}

void fill(auto& collection, const Elements& elements) {
    collection.reset();
    collection.reset(new typename std::remove_reference_t<decltype(collection)>::element_type);
    for (void* element : elements) collection->insert(element);
}
void fillOnce(auto& collection, const Elements& elements) {
    if (collection == nullptr) fill(collection, elements);
}

void insertions(const char* label, const Elements& elements, double limit) {
    compareSets(
        label, limit,
        [&](auto& set) {
            for (void* e : elements) set->insert(e);
        },
        [&](auto& set) { fill(set, {}); });
}

void searches(const std::string& label, const Elements& elements, const Elements& missing) {
    const auto filled = [&](auto& set) { fillOnce(set, elements); };
    const auto search = [&](const Elements& keys, auto find) {
        return [&keys, find](auto& set) {
            std::uintptr_t sum = 0;
            for (void* key : keys) sum += reinterpret_cast<std::uintptr_t>(find(*set, key));
            bench::keep(sum);
        };
    };
    Elements keys = elements;
    std::shuffle(keys.begin(), keys.end(), std::mt19937(3));
    compareSets("Find hit, random, " + label, 0.9,
                search(keys, [](auto& set, void* key) { return set.find(key); }), filled);
    compareSets("Find next greater, random, " + label, 0.9,
                search(missing, [](auto& set, void* key) { return set.findGreater(key); }), filled);
}

void walks(const Elements& elements) {
    const auto filled = [&](auto& set) { fillOnce(set, elements); };
    const auto count = std::to_string(elements.size());
    const auto pointers = [](std::uintptr_t& sum) {
        return [&sum](void* element) { sum += reinterpret_cast<std::uintptr_t>(element); };
    };
    const auto contents = [](std::uintptr_t& sum) {
        return [&sum](void* element) { sum += static_cast<unsigned char*>(element)[headerSize]; };
    };
    const auto forward = [](auto visitor) {
        return [visitor](auto& set) {
            std::uintptr_t sum = 0;
            set->walk(visitor(sum));
            bench::keep(sum);
        };
    };
    const auto backward = [](auto visitor) {
        return [visitor](auto& set) {
            std::uintptr_t sum = 0;
            set->walkBack(visitor(sum));
            bench::keep(sum);
        };
    };
    compareSets("walk with Next, pointers only, " + count, 1.0, forward(pointers), filled);
    compareSets("walk with Back, pointers only, " + count, 1.0, backward(pointers), filled);
    compareSets("walk with Next, reading elements, " + count, 1.0, forward(contents), filled);
    compareSets("walk with Back, reading elements, " + count, 1.0, backward(contents), filled);
}

void erasures(const Elements& elements) {
    Elements order = elements;
    std::shuffle(order.begin(), order.end(), std::mt19937(5));
    compareSets(
        "erase all, random order, " + std::to_string(elements.size()), 1.0,
        [&](auto& set) {
            for (void* e : order) set->erase(e);
        },
        [&](auto& set) { fill(set, elements); });
}

#ifdef KESTRA_BENCH_PEERS
template <class Collection>
double bytesPerElement(const Elements& elements) {
    const std::size_t before = mallinfo2().uordblks;
    std::unique_ptr<Collection> collection;
    fill(collection, elements);
    return static_cast<double>(mallinfo2().uordblks - before) / static_cast<double>(elements.size());
}

void memory(const char* name, const Elements& elements) {
    bench::printLine(name, bytesPerElement<Ours>(elements), Peer<AbslSet>::name,
                     bytesPerElement<Peer<AbslSet>>(elements), "B", 1.2);
}
#endif

void collections(std::size_t count) {
    std::mt19937 random(static_cast<unsigned>(count));
    const Elements elements = randomElements(count, random);
    const Elements ascending = inKeyOrder(elements);
    const Elements missing = randomElements(count, random);
    const auto size = std::to_string(count);
    insertions(("Insert, random, " + size).c_str(), elements, 0.9);
    insertions(("Insert, ascending, " + size).c_str(), ascending, 0.8);
    searches(size, elements, missing);
    walks(elements);
    erasures(elements);
#ifdef KESTRA_BENCH_PEERS
    memory(("bytes per element, random, " + size).c_str(), elements);
    memory(("bytes per element, ascending, " + size).c_str(), ascending);
#endif
    freeElements(elements);
    freeElements(missing);
}

/// Keyed elements in one of the library's own orders.
void textCollections(std::size_t count) {
    orderInUse = tri_CEDynamique_ASCII;
    newElement = newKeyedElement;
    std::mt19937 random(static_cast<unsigned>(count));
    const Elements elements = randomElements(count, random);
    const Elements missing = randomElements(count, random);
    const auto label = std::to_string(count) + " CEDynamique";
    insertions(("Insert, random, " + label).c_str(), elements, 0.9);
    searches(label, elements, missing);
    freeElements(elements);
    freeElements(missing);
    orderInUse = compareKeys;
    newElement = newPlainElement;
}

// ---- numbers

constexpr int denseNumbers = 1'000'000;

/// A table filled through its directory alone, and its peers.
struct OursByNumber {
    static constexpr const char* name = "CTbl::At";
    CTbl table{typeDynamique};
    ~OursByNumber() {
        // The elements are not the table's: the slots are emptied before it goes.
        for (int i = 1; i <= denseNumbers; ++i) add(i, nullptr);
    }
    void add(int number, void* element) {
        void** slot = nullptr;
        table.At(number, 1, &slot);
        *slot = element;
    }
    void* at(int number) { return table.At(number); }
};
struct StdByNumber {
    static constexpr const char* name = "std::unordered_map";
    std::unordered_map<int, void*> map;
    void add(int number, void* element) { map[number] = element; }
    void* at(int number) {
        const auto found = map.find(number);
        return found != map.end() ? found->second : nullptr;
    }
};
#ifdef KESTRA_BENCH_PEERS
struct JudyByNumber {
    static constexpr const char* name = "JudyL";
    void* array = nullptr;
    ~JudyByNumber() { JudyLFreeArray(&array, nullptr); }
    void add(int number, void* element) {
        *static_cast<void**>(JudyLIns(&array, static_cast<Word_t>(number), nullptr)) = element;
    }
    void* at(int number) {
        void** const slot = static_cast<void**>(JudyLGet(array, static_cast<Word_t>(number), nullptr));
        return slot != nullptr ? *slot : nullptr;
    }
};
#endif

void compareNumbers(const char* name, double limit, auto work, auto before) {
    std::vector<Contender> peers = {contender<StdByNumber>(work, before)};
#ifdef KESTRA_BENCH_PEERS
    peers.push_back(contender<JudyByNumber>(work, before));
#endif
    againstBest(name, limit, contender<OursByNumber>(work, before), std::move(peers));
}

void numbers() {
    std::vector<int> order(denseNumbers);
    std::iota(order.begin(), order.end(), 1);
    std::vector<int> shuffled = order;
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(7));
    const auto addAll = [&](auto& map) {
        for (int i : order) map->add(i, &order);
    };
    const auto empty = [](auto& map) {
        map.reset();
        map.reset(new typename std::remove_reference_t<decltype(map)>::element_type);
    };
    const auto filled = [&](auto& map) {
        if (map == nullptr) {
            empty(map);
            addAll(map);
        }
    };
    const auto readAll = [](const std::vector<int>& wanted) {
        return [&wanted](auto& map) {
            std::uintptr_t sum = 0;
            for (int i : wanted) sum += reinterpret_cast<std::uintptr_t>(map->at(i));
            bench::keep(sum);
        };
    };
    compareNumbers("At, 1,000,000 numbers dense from 1, random order", 0.25, readAll(shuffled), filled);
    compareNumbers("At, 1,000,000 numbers dense from 1, in order", 0.25, readAll(order), filled);
    compareNumbers("directory part of Add, 1,000,000 dense from 1", 0.6, addAll, empty);
}

}  // namespace

/// Without arguments everything; with sizes only the collections of so many elements, with 0 the tables.
int main(int count, char** sizes) {
    for (int i = 1; i < count; ++i) {
        const long size = std::atol(sizes[i]);
        if (size > 0) {
            collections(static_cast<std::size_t>(size));
            textCollections(static_cast<std::size_t>(size));
        } else {
            numbers();
        }
    }
    if (count > 1) return 0;
    for (const std::size_t size : {100'000, 1'000'000}) {
        collections(size);
        textCollections(size);
    }
    numbers();
}
