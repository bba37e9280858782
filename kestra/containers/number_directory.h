#pragma once
#include <kestra/containers/table.h>

/// What a table does with the blocks of its number directory.
namespace directory_of_numbers {

constexpr std::uint32_t beyondLast = 0x80000000;  ///< walks see the numbers below this one

/// Retried until there is memory.
NumberRoot* newRoot();
/// Slot of a number; null when a block on the way is missing, or could not be made with `create`.
void** slotOf(NumberRoot* root, std::uint32_t number, bool create);
/// First occupied number from `number` on, upward or downward; false when there is none.
bool seekUp(NumberRoot* root, std::uint32_t& number);
bool seekDown(NumberRoot* root, std::uint32_t& number);
/// First number from `number` on that is not occupied; `beyondLast` at most.
std::uint32_t firstFree(NumberRoot* root, std::uint32_t number);
/// Frees every block, the root included, and hands every pointer in the slots to `visit`; returns how many
/// there were.
int freeAll(NumberRoot* root, void (*visit)(void* element));

}  // namespace directory_of_numbers
