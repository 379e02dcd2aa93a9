#pragma once

#include <cstdint>
#include <type_traits>

#include "utilities/ExceptionOutOfBound.h"
#include "utilities/List.h"
#include "utilities/ListIterator.h"
#include "utilities/MapIterator.h"
#include "utilities/Pair.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace Utilities {

// A hash table of String keys with a fixed number of buckets. It never grows and never
// forgets a key, so a reference to a value stays good for the life of the Map. The table is
// only allocated with the first entry.
template<class K, class V>
class Map {
    static_assert(std::is_same_v<K, String>, "a Map is keyed by String");

    using Entry = Pair<String, V>;
    using Bucket = List<Entry>;
    using Buckets = Vector<Bucket>;

public:
    static constexpr uint32_t defaultBucketCount = 53;

    Map() : count(0), buckets(nullptr), bucketCount(defaultBucketCount) { }

    Map(const Map& other) : count(other.count), buckets(CopyOfBuckets(other)), bucketCount(other.bucketCount) { }

    Map& operator=(const Map& other)
    {
        if (this != &other) {
            Buckets* copy = CopyOfBuckets(other);
            delete buckets;
            buckets = copy;
            bucketCount = other.bucketCount;
            count = other.count;
        }
        return *this;
    }

    virtual ~Map() { delete buckets; }

    unsigned long Size() const { return count; }

    // A missing key is added with a default value.
    V& operator[](const String& key)
    {
        uint32_t bucket = key.Hash(bucketCount);
        if (buckets == nullptr) {
            buckets = new Buckets(bucketCount);
        }
        Bucket& entries = (*buckets)[bucket];
        ListIterator<Entry> entry = EntryIn(entries, key);
        if (entry.IsValid()) {
            return entry->value;
        }
        Entry added;
        added.key = key;
        entry = entries.Append(added);
        ++count;
        return entry->value;
    }

    const V& operator[](const String& key) const
    {
        MapIterator<K, const V> entry = Find(key);
        if (!entry.IsValid()) {
            throw ExceptionOutOfBound("Not a valid key for 'operator[key] const' ");
        }
        return entry.Value();
    }

    MapIterator<K, V> Find(const String& key) { return FindIn(*this, key); }
    MapIterator<K, const V> Find(const String& key) const { return FindIn(*this, key); }

    MapIterator<K, V> Begin() { return MapIterator<K, V>::First(*this); }
    MapIterator<K, const V> Begin() const { return MapIterator<K, const V>::First(*this); }

    // Equal when every key of this Map is found in the other one with an equal value; the
    // order of the entries plays no part.
    bool operator==(const Map& other) const
    {
        if (this == &other) {
            return true;
        }
        if (count != other.count) {
            return false;
        }
        for (MapIterator<K, const V> entry = Begin(); entry.IsValid(); ++entry) {
            MapIterator<K, const V> match = other.Find(entry.Key());
            if (!match.IsValid() || !(match.Value() == entry.Value())) {
                return false;
            }
        }
        return true;
    }

private:
    template<class, class>
    friend class MapIterator;

    template<class Self>
    static auto FindIn(Self& map, const String& key)
    {
        using Iterator = MapIterator<K, std::conditional_t<std::is_const_v<Self>, const V, V>>;
        using BucketType = std::conditional_t<std::is_const_v<Self>, const Bucket, Bucket>;
        if (map.buckets == nullptr) {
            return Iterator(map);
        }
        uint32_t bucket = key.Hash(map.bucketCount);
        BucketType& entries = (*map.buckets)[bucket];
        auto entry = EntryIn(entries, key);
        if (!entry.IsValid()) {
            return Iterator(map);
        }
        return Iterator(map, bucket, entry);
    }

    template<class BucketType>
    static auto EntryIn(BucketType& entries, const String& key)
    {
        auto entry = entries.Begin();
        while (entry.IsValid() && !(entry->key == key)) {
            ++entry;
        }
        return entry;
    }

    static Buckets* CopyOfBuckets(const Map& source)
    {
        return source.count == 0 ? nullptr : new Buckets(*source.buckets);
    }

    uint32_t count;
    Buckets* buckets;
    uint32_t bucketCount;
};

}
