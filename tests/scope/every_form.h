// What the fuzzer does with an input, and the tests with saved ones.
#pragma once

#include <cstddef>
#include <cstdint>

// Reads a text, whatever it is, whole and in pieces, and makes every form of it. Ends the process
// where that does not give what it should.
void make_every_form(const uint8_t *data, size_t size);
