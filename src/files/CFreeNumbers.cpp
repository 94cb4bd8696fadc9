#include "files/CFreeNumbers.h"

void CFreeNumbers::reserve(std::size_t number)
{
    if (number < end_) {
        gaps_.erase(number);
    } else if (number > end_) {
        beyond_.insert(number);
    } else {
        do {
            ++end_;
        } while (beyond_.erase(end_) > 0);
    }
}

void CFreeNumbers::release(std::size_t number)
{
    if (number < end_) {
        gaps_.insert(number);
    } else {
        beyond_.erase(number);
    }
}
