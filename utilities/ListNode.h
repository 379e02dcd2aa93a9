#pragma once

#include <cstdint>

namespace Utilities {

// One element of a List. A node that iterators stand on outlives its removal (removed) and
// even its list (orphaned): the last iterator to leave an orphaned node deletes it.
template<class T>
struct ListNode {
    ListNode* next;
    ListNode* previous;
    bool removed;
    uint32_t iteratorCount;
    bool orphaned;
    T element;
};

}
