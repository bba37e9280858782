#pragma once
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "../../support/containers_check.h"

/// Lets `check` run `seeds` sequences of `count` random operations against its model.
inline void expectAgreement(decltype(&checkTri) check, unsigned seeds, std::size_t count) {
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        std::mt19937 random(seed);
        std::vector<std::uint8_t> operations(count);
        for (auto& byte : operations) byte = static_cast<std::uint8_t>(random());
        ASSERT_STREQ(check(operations), nullptr) << "seed " << seed;
    }
}
