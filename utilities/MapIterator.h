#pragma once

#include <cstdint>
#include <type_traits>

#include "utilities/ExceptionOutOfBound.h"
#include "utilities/List.h"
#include "utilities/ListIterator.h"
#include "utilities/Pair.h"

namespace Utilities {

template<class K, class V>
class Map;

// Walks a Map bucket by bucket, and inside a bucket in the order of insertion. An iterator
// on a const Map is a MapIterator<K, const V>.
template<class K, class V>
class MapIterator {
    using Element = std::remove_const_t<V>;
    static constexpr bool onConstMap = std::is_const_v<V>;
    using MapType = std::conditional_t<onConstMap, const Map<K, Element>, Map<K, Element>>;
    using Entry = std::conditional_t<onConstMap, const Pair<K, Element>, Pair<K, Element>>;
    using Bucket = std::conditional_t<onConstMap, const List<Pair<K, Element>>, List<Pair<K, Element>>>;

public:
    MapIterator(const MapIterator&) = default;
    MapIterator& operator=(const MapIterator&) = default;
    virtual ~MapIterator() = default;

    bool IsValid() const { return position.IsValid(); }

    MapIterator& operator++()
    {
        ++position;
        if (!position.IsValid()) {
            MoveToFirstEntryFrom(bucket + 1);
        }
        return *this;
    }

    const K& Key() const
    {
        CheckValid();
        return position->key;
    }

    V& Value() const
    {
        CheckValid();
        return position->value;
    }

private:
    template<class, class>
    friend class Map;

    explicit MapIterator(MapType& map) : bucket(map.bucketCount), position(), map(&map) { }

    MapIterator(MapType& map, uint32_t bucket, const ListIterator<Entry>& position)
        : bucket(bucket), position(position), map(&map)
    {
    }

    static MapIterator First(MapType& map)
    {
        MapIterator iterator(map);
        iterator.MoveToFirstEntryFrom(0);
        return iterator;
    }

    void MoveToFirstEntryFrom(uint32_t firstBucket)
    {
        if (map->buckets != nullptr) {
            for (bucket = firstBucket; bucket < map->bucketCount; ++bucket) {
                position = BucketAt(bucket).Begin();
                if (position.IsValid()) {
                    return;
                }
            }
        }
        bucket = map->bucketCount;
        position = ListIterator<Entry>();
    }

    Bucket& BucketAt(uint32_t index) const { return (*map->buckets)[index]; }

    void CheckValid() const
    {
        if (!IsValid()) {
            throw ExceptionOutOfBound("MapIterator is not valid");
        }
    }

    uint32_t bucket;
    ListIterator<Entry> position;
    MapType* map;
};

}
