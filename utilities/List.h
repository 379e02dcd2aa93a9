#pragma once

#include <cstdint>
#include <new>

#include "utilities/ExceptionNullpointer.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/ListIterator.h"
#include "utilities/ListNode.h"

namespace Utilities {

// A doubly linked list that can only grow at its end. Removal is safe under a running
// iteration: a node that another iterator stands on is only marked as removed and freed later.
template<class T>
class List {
    using Node = ListNode<T>;

public:
    List() : count(0), hasRemovedNodes(false), head(nullptr), tail(nullptr) { }

    List(const List& other) : List() { CopyNodesOf(other); }

    List& operator=(const List& other)
    {
        if (this != &other) {
            Clear();
            CopyNodesOf(other);
        }
        return *this;
    }

    ~List() { ReleaseNodes(); }

    unsigned long Size() const { return count; }

    ListIterator<T> Append(const T& element)
    {
        Node* node = new (std::nothrow) Node{nullptr, nullptr, false, 0, false, element};
        if (node == nullptr) {
            throw ExceptionNullpointer("Out of memory. Can't insert element into list");
        }
        Link(node);
        ++count;
        return ListIterator<T>(node);
    }

    ListIterator<T> Begin() { return ListIterator<T>(FirstLiveNode()); }
    ListIterator<const T> Begin() const { return ListIterator<const T>(FirstLiveNode()); }

    // The iterator moves on to the next element; the removed element comes back as a copy.
    T Remove(ListIterator<T>& iterator)
    {
        if (hasRemovedNodes) {
            SweepRemovedNodes();
        }
        if (!iterator.IsValid()) {
            throw ExceptionOutOfBound("List::Remove(): Invalid Iterator used to remove element.");
        }
        Node* node = iterator.node;
        T element = node->element;
        ++iterator;
        --count;
        if (node->iteratorCount > 0) {
            node->removed = true;
            hasRemovedNodes = true;
        } else {
            Unlink(node);
            delete node;
        }
        return element;
    }

    void Clear()
    {
        ReleaseNodes();
        head = nullptr;
        tail = nullptr;
        count = 0;
        hasRemovedNodes = false;
    }

private:
    Node* FirstLiveNode() const
    {
        Node* node = head;
        while (node != nullptr && node->removed) {
            node = node->next;
        }
        return node;
    }

    void Link(Node* node)
    {
        node->previous = tail;
        if (tail != nullptr) {
            tail->next = node;
        } else {
            head = node;
        }
        tail = node;
    }

    void Unlink(Node* node)
    {
        if (node->previous != nullptr) {
            node->previous->next = node->next;
        } else {
            head = node->next;
        }
        if (node->next != nullptr) {
            node->next->previous = node->previous;
        } else {
            tail = node->previous;
        }
    }

    // Frees the removed nodes that no iterator stands on any more.
    void SweepRemovedNodes()
    {
        bool nodeKept = false;
        Node* node = head;
        while (node != nullptr) {
            Node* following = node->next;
            if (node->removed) {
                if (node->iteratorCount > 0) {
                    nodeKept = true;
                } else {
                    Unlink(node);
                    delete node;
                }
            }
            node = following;
        }
        hasRemovedNodes = nodeKept;
    }

    // Nodes that iterators stand on are handed over to them; the last one to leave frees it.
    void ReleaseNodes()
    {
        Node* node = head;
        while (node != nullptr) {
            Node* following = node->next;
            if (node->iteratorCount == 0) {
                delete node;
            } else {
                node->next = nullptr;
                node->previous = nullptr;
                node->removed = true;
                node->orphaned = true;
            }
            node = following;
        }
    }

    void CopyNodesOf(const List& other)
    {
        try {
            for (Node* source = other.head; source != nullptr; source = source->next) {
                if (!source->removed) {
                    Link(CopyOfNode(source));
                }
            }
        } catch (...) {
            Clear();
            throw;
        }
        count = other.count;
    }

    static Node* CopyOfNode(const Node* source)
    {
        Node* node = new (std::nothrow) Node{nullptr, nullptr, false, 0, false, source->element};
        if (node == nullptr) {
            throw ExceptionNullpointer("Can't create copy of list. System is out of memory");
        }
        return node;
    }

    uint32_t count;
    bool hasRemovedNodes;
    Node* head;
    Node* tail;
};

}
