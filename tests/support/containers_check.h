#pragma once
#include <cstdint>
#include <span>

/// Runs the operations that a sequence of bytes spells on a collection and on a plain model of it, and
/// compares results, cursor, order and invariants after each of them. Null when all agreed, else what did
/// not.
const char* checkTri(std::span<const std::uint8_t> operations);

/// The same for a table: numbers, keys, ownership.
const char* checkTable(std::span<const std::uint8_t> operations);
