#pragma once

// The library is built with hidden symbols; this marks what a host application links against.
// The same mark serves both sides on Linux.
#define BROVIA_EXPORT __attribute__((visibility("default")))
