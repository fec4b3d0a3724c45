// One input of the reader's fuzzer: a text.
#include "every_form.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    make_every_form(data, size);
    return 0;
}
