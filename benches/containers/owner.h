// An owner of 1,000,000 ids for the benches, compiled apart: nobody sees through its virtual calls.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "containers/ims_container.h"

constexpr std::int32_t kIds = 1000000;

struct BenchOwner : demovex::IMSContainer {
    std::vector<std::int32_t> keys;  // key of id i at place i; place 0 is unused
    std::int32_t live = 0;           // ids 1 to live are items
};

// The hash of a key is the key itself; prime sizes do the spreading.
enum class Keys {
    kInOrder,    // the even numbers from 1000 on, rising with the ids: a numbered catalogue
    kShuffled,   // the same numbers, ids in any order
    kScattered,  // any different even 31-bit numbers, ids in any order
};
std::shared_ptr<BenchOwner> MakeOwner(std::uint32_t seed, Keys kind);
