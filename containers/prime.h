// The prime search that sizes the hash table.
//
// The known primes are kept for the life of the process, so that sizing a table costs a few trial
// divisions per candidate. Callers may be on different threads.
#pragma once

#include <cstdint>

namespace demovex {

// The least prime that is not below n, searched among the odd numbers from n (or n + 1) on, n's
// sign bit cleared. 0 and 1 count as prime: FindPrime(0) is 1, FindPrime(20) is 23. Raises 6 when
// the search passes the largest 32-bit integer.
std::int32_t FindPrime(std::int32_t n);

// Trial division by the known primes, which grow as far as the square root of n asks for; 0 and 1
// count as prime. Raises 5 for a negative n.
bool IsPrime(std::int32_t n);

// What the process-wide table holds at the moment: it starts with ten primes in room for 1,000 and
// grows by 1,000.
struct PrimeTableSize {
    std::int32_t count;
    std::int32_t capacity;
};
PrimeTableSize KnownPrimes();

}  // namespace demovex
