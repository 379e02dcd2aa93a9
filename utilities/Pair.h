#pragma once

namespace Utilities {

template<class K, class V>
class Pair {
public:
    Pair() : key(), value() { }
    Pair(const K& key, const V& value) : key(key), value(value) { }
    Pair(const Pair&) = default;
    Pair& operator=(const Pair&) = default;
    virtual ~Pair() = default;

    K key;
    V value;
};

}
