#pragma once

#include <sodium.h>

#include <array>
#include <cstddef>

/// Bytes that are overwritten when they are no longer needed: keys, and what was read of a store's content.
template <std::size_t N>
struct Secret : std::array<unsigned char, N> {
    Secret() : std::array<unsigned char, N>{} {}
    ~Secret() { sodium_memzero(this->data(), N); }
    Secret(const Secret &) = delete;
    Secret &operator=(const Secret &) = delete;
};
