#pragma once

#include <cstdio>

/// Whether a person is at the other end of `stream`.
bool isTerminal(std::FILE *stream);
