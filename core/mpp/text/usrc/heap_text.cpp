// The growing block of a text.
#include "heap_text.h"

#include <cstdlib>
#include <utility>

HeapText::~HeapText()
{
    free(block_);
}

int32_t HeapText::deliver(char **str)
{
    put(std::string_view("\0", 1)); // the end of a C string
    *str = std::exchange(block_, nullptr);
    at_ = end_ = nowhere_;
    return failed_ ? -1 : 0;
}

std::string_view HeapText::written() const
{
    return block_ != nullptr ? std::string_view(block_, static_cast<size_t>(at_ - block_))
                             : std::string_view();
}

void HeapText::clear()
{
    if (block_ != nullptr)
        at_ = block_;
}

void HeapText::grow(Text &text)
{
    auto &self = static_cast<HeapText &>(text);
    if (!self.failed_) {
        const size_t length =
            self.block_ != nullptr ? static_cast<size_t>(self.at_ - self.block_) : 0;
        const size_t capacity = 2 * (length + ROOM); // at least twice what there was
        auto *const block = static_cast<char *>(realloc(self.block_, capacity));
        if (block != nullptr) {
            self.block_ = block;
            self.at_ = block + length;
            self.end_ = block + capacity;
            return;
        }
        free(std::exchange(self.block_, nullptr));
        self.failed_ = true;
    }
    self.at_ = self.nowhere_;
    self.end_ = self.nowhere_ + sizeof(self.nowhere_);
}
