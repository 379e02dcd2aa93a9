#pragma once

#include <type_traits>

#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ListNode.h"

namespace Utilities {

template<class T>
class List;

// Stands on one node of a List and keeps it alive; an iterator on a const List is a
// ListIterator<const T>. It turns invalid when another iterator removes its node or when it
// runs past the end.
template<class T>
class ListIterator {
    using Element = std::remove_const_t<T>;
    using Node = ListNode<Element>;

public:
    ListIterator() : node(nullptr) { }

    ListIterator(const ListIterator& other) : node(other.node) { Enter(); }

    ListIterator& operator=(const ListIterator& other)
    {
        if (node != other.node) {
            Leave();
            node = other.node;
            Enter();
        }
        return *this;
    }

    ~ListIterator() { Leave(); }

    bool IsValid() const { return node != nullptr && !node->removed; }

    ListIterator& operator++()
    {
        if (!IsValid()) {
            throw ExceptionOutOfBound("ListIterator::operator++(): Can't increment iterator because it's invalid");
        }
        Node* following = node->next;
        while (following != nullptr && following->removed) {
            following = following->next;
        }
        MoveTo(following);
        return *this;
    }

    T& Current() const
    {
        if (!IsValid()) {
            throw ExceptionOutOfBound("ListIterator::Current(): Can't return value because iterator is invalid");
        }
        return node->element;
    }

    T* operator->() const
    {
        if (!IsValid()) {
            throw ExceptionOutOfBound("ListIterator::operator->(): Can't return value because iterator is invalid");
        }
        return &node->element;
    }

private:
    template<class>
    friend class List;

    explicit ListIterator(Node* node) : node(node) { Enter(); }

    void MoveTo(Node* target)
    {
        Leave();
        node = target;
        Enter();
    }

    void Enter()
    {
        if (node != nullptr) {
            ++node->iteratorCount;
        }
    }

    void Leave()
    {
        if (node == nullptr) {
            return;
        }
        --node->iteratorCount;
        if (node->iteratorCount == 0 && node->orphaned) {
            DeleteOrphan(node);
        }
        node = nullptr;
    }

    // Kept out of line: where two iterators on one node leave it in turn, the compiler can't
    // see that only the last one deletes, and would report a use after free.
    [[gnu::noinline]] static void DeleteOrphan(Node* orphan) { delete orphan; }

    Node* node;
};

}
