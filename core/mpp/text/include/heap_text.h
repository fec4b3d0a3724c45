// A text that is kept in memory and handed over.
#pragma once

#include "text.h"

// The text lies in a block of the system allocator that at least doubles whenever it is full. When
// it cannot grow, the block is freed, what follows is dropped, and deliver() reports the failure.
// So nothing needs to be checked between the first piece and the delivery.
class HeapText : public Text
{
public:
    // cppcheck-suppress uninitMemberVar // nowhere_ is never read
    HeapText() : Text(nowhere_, nowhere_, grow) {}
    ~HeapText();

    // Hands the text over, as the last thing that is done with it: returns 0 with a terminated text
    // in *str that the caller releases with free(), or -1 with nullptr there after a failure.
    int32_t deliver(char **str);

    // What has been written, valid until more is; empty after a failure.
    std::string_view written() const;
    bool failed() const { return failed_; }

    // Begins anew, in the block that there is.
    void clear();

private:
    static void grow(Text &text);

    char *block_ = nullptr;
    bool failed_ = false;
    char nowhere_[ROOM]; // where the text goes after a failure
};
