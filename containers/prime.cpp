#include "containers/prime.h"

#include <atomic>
#include <cmath>
#include <vector>

#include "base/checked.h"
#include "base/round.h"

namespace demovex {
namespace {

// One of the two pieces of process-wide state. Hosts may run several apartments in one process, so
// a spin lock guards it; it is held for microseconds and nothing calls out meanwhile.
class PrimeTable {
  public:
    bool IsPrime(std::int32_t n) {
        const Guard guard(lock_);
        return Test(n);
    }

    PrimeTableSize Size() {
        const Guard guard(lock_);
        Prepare();
        return {static_cast<std::int32_t>(primes_.size()), capacity_};
    }

  private:
    static constexpr std::int32_t kStep = 1000;

    class Guard {
      public:
        explicit Guard(std::atomic_flag& lock) : lock_(lock) {
            while (lock_.test_and_set(std::memory_order_acquire)) {
            }
        }
        ~Guard() { lock_.clear(std::memory_order_release); }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

      private:
        std::atomic_flag& lock_;
    };

    void Prepare() {
        if (!primes_.empty()) return;
        primes_.reserve(kStep);
        primes_.assign({2, 3, 5, 7, 11, 13, 17, 19, 23, 29});
        capacity_ = kStep;
    }

    bool Test(std::int32_t n) {
        Prepare();
        const std::int32_t limit = RoundToInt32(std::sqrt(static_cast<double>(n)));
        while (primes_.back() <= limit) {
            std::int32_t candidate = CheckedAdd(primes_.back(), 2);
            while (!Test(candidate)) candidate = CheckedAdd(candidate, 2);
            Append(candidate);
        }
        for (const std::int32_t prime : primes_) {
            if (prime > limit) return true;
            if (n % prime == 0) return false;
        }
        return true;  // not reached: the largest known prime is above the limit
    }

    void Append(std::int32_t prime) {
        if (static_cast<std::int32_t>(primes_.size()) == capacity_) {
            primes_.reserve(static_cast<std::size_t>(capacity_) + kStep);
            capacity_ += kStep;
        }
        primes_.push_back(prime);
    }

    std::atomic_flag lock_;
    std::vector<std::int32_t> primes_;
    std::int32_t capacity_ = 0;
};

PrimeTable& Table() {
    static PrimeTable table;
    return table;
}

}  // namespace

bool IsPrime(std::int32_t n) {
    if (n < 0) RaiseRuntimeError(runtime_error::kInvalidProcedureCall);
    return Table().IsPrime(n);
}

std::int32_t FindPrime(std::int32_t n) {
    std::int32_t candidate = (n & 0x7FFFFFFE) + 1;
    while (!IsPrime(candidate)) candidate = CheckedAdd(candidate, 2);
    return candidate;
}

PrimeTableSize KnownPrimes() {
    return Table().Size();
}

}  // namespace demovex
